#pragma once

#include <filesystem>
#include <vector>

#include "agents/model/AgentUsageAdapter.h"
#include "base/FileOpener.h"

namespace quillmeter {

// Reads OpenCode's "opencode.db" or, where older versions left none, its message files. Owned by the collector, used on
// its queue. Keeps nothing between calls.
class OpenCodeUsageAdapter final : public AgentUsageAdapter {
 public:
  explicit OpenCodeUsageAdapter(FileOpener& opener) : opener_(opener) {}

  // `root` is the folder that OpenCode keeps its data in.
  std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) override;
  int unreadableSourceCount() const override { return unreadableSourceCount_; }

 private:
  FileOpener& opener_;
  int unreadableSourceCount_ = 0;
};

}  // namespace quillmeter
