#pragma once

#include <optional>

#include "agents/adapters/FileCache.h"
#include "agents/adapters/LocalUsageReader.h"
#include "agents/model/AgentUsageAdapter.h"

namespace quillmeter {

struct CachedSessionFile {
  FileSignature signature;
  std::optional<AdapterUsageSession> session;  // absent when the file has no usage
};

// Reads WorkBuddy's transcripts: JSON lines, one file a session. The figures come in the spelling of whichever model
// served the response. See docs/formats/workbuddy.md.
class WorkBuddyUsageAdapter final : public AgentUsageAdapter {
 public:
  explicit WorkBuddyUsageAdapter(FileOpener& opener) : reader_(opener) {}

  std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) override;
  void clearCache() override { cache_.clear(); }

 private:
  bool parse(const std::filesystem::path& file, std::optional<AdapterUsageSession>& session);

  LocalUsageReader reader_;
  FileCache<CachedSessionFile> cache_;
};

}  // namespace quillmeter
