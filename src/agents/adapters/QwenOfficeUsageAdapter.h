#pragma once

#include <string>
#include <vector>

#include "agents/adapters/FileCache.h"
#include "agents/adapters/LocalUsageReader.h"
#include "agents/model/AgentUsageAdapter.h"

namespace quillmeter {

struct ParsedSegmentFile {
  std::string sessionID;
  std::vector<AdapterUsageEvent> events;
};

struct CachedSegmentFile {
  FileSignature signature;
  ParsedSegmentFile parsed;
};

// Reads Qwen Office's logs: JSON lines in <session>/segments/*.jsonl, where a session goes on from segment to segment.
// A response without figures is an event of zero tokens, so that its session is seen. See docs/formats/qwen-office.md.
class QwenOfficeUsageAdapter final : public AgentUsageAdapter {
 public:
  explicit QwenOfficeUsageAdapter(FileOpener& opener) : reader_(opener) {}

  std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) override;
  void clearCache() override { cache_.clear(); }

 private:
  bool parse(const std::filesystem::path& file, ParsedSegmentFile& parsed);

  LocalUsageReader reader_;
  FileCache<CachedSegmentFile> cache_;
};

}  // namespace quillmeter
