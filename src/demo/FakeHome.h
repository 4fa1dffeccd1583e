#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "agents/AgentUsageCollector.h"
#include "demo/MachineDescription.h"

namespace quillmeter {

// A home folder on disk with what agents leave in it, as described: the real logs of Codex and Claude Code, and the
// folders of the others, whose sessions come from the adapters that makeAdapters() gives. Removed at the end.
class FakeHome {
 public:
  FakeHome();
  ~FakeHome();
  FakeHome(const FakeHome&) = delete;
  FakeHome& operator=(const FakeHome&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // Replaces what was written before; the next scan sees it.
  void write(const std::map<AgentLogProvider, DescribedAgent>& agents, const std::optional<DescribedLimits>& limits);
  // They read this home, which outlives them.
  AgentUsageAdapters makeAdapters() const;

 private:
  class Adapter;
  void install(AgentLogProvider provider) const;
  void remove(AgentLogProvider provider) const;
  void writeCodexLogs(const std::vector<AdapterUsageSession>& sessions,
                      const std::optional<DescribedLimits>& limits) const;
  void writeClaudeLogs(const std::vector<AdapterUsageSession>& sessions) const;

  std::filesystem::path path_;
  std::map<AgentLogProvider, DescribedAgent> agents_;
};

}  // namespace quillmeter
