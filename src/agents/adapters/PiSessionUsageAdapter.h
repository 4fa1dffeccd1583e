#pragma once

#include <vector>

#include "agents/adapters/FileCache.h"
#include "agents/adapters/LocalUsageReader.h"
#include "agents/model/AgentUsageAdapter.h"

namespace quillmeter {

// Reads Pi's session files: JSON lines, one file a session. See docs/formats/pi.md.
class PiSessionUsageAdapter final : public AgentUsageAdapter {
 public:
  explicit PiSessionUsageAdapter(FileOpener& opener) : reader_(opener) {}

  // Every session with usage, whenever it was active.
  std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) override;
  void clearCache() override { cache_.clear(); }

 private:
  struct CachedFile {
    FileSignature signature;
    std::vector<AdapterUsageEvent> events;
  };

  LocalUsageReader reader_;
  FileCache<CachedFile> cache_;
};

}  // namespace quillmeter
