#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "agents/AgentLogSource.h"
#include "agents/model/AgentUsageAdapter.h"
#include "agents/model/AgentUsageSnapshot.h"
#include "base/Calendar.h"
#include "base/FileOpener.h"

namespace quillmeter {

// A log, or a folder of logs, that the last scan could not read; `error` is an errno, EOVERFLOW when its counters cannot be summed.
struct UnreadableLog {
  AgentLogProvider provider = AgentLogProvider::codex;
  std::string path;
  int error = 0;
};

// How far the running scan has come; bytes are those of the files that have to be read.
struct AgentScanProgress {
  std::int64_t filesDone = 0;
  std::int64_t filesTotal = 0;
  std::int64_t bytesDone = 0;
  std::int64_t bytesTotal = 0;
};

using AgentUsageAdapters = std::map<AgentLogProvider, std::unique_ptr<AgentUsageAdapter>>;

// Turns the logs of all enabled agents into one snapshot: reads Codex and Claude Code itself, calls an adapter for each
// of the others, and sums them all the same way. Lives as long as the store, which owns it; all of it is used on the
// agent queue only, but for progress(). Keeps one entry a file of the month, so that an unchanged file is never opened
// twice. A scan that has much to read spreads the files over a few threads that live as long as the scan; `opener` is
// then called from all of them.
class AgentUsageCollector {
 public:
  static constexpr std::size_t maximumNamedLogs = 100;

  // `opener` outlives the collector. A provider without adapter (other than Codex and Claude) has no sessions.
  AgentUsageCollector(FileOpener& opener, Calendar calendar, AgentUsageAdapters adapters);
  ~AgentUsageCollector();
  AgentUsageCollector(const AgentUsageCollector&) = delete;
  AgentUsageCollector& operator=(const AgentUsageCollector&) = delete;

  // One whole scan. Never throws: what cannot be read is skipped and counted.
  AgentUsageSnapshot collect(const std::vector<AgentLogSource>& sources, Date now);

  // Forgets every parsed file, the adapters' too; the next scan reads all again.
  void clearCaches();
  // For a change of time zone or first weekday; the cached files stay valid.
  void setCalendar(Calendar calendar);
  // The most threads a scan may use, the caller's included; 0 (the start value) is one a core, at most 4.
  void setMaximumThreads(int threads);

  // The logs that the last scan could not read, the first maximumNamedLogs of them.
  const std::vector<UnreadableLog>& unreadableLogs() const;
  // Any thread.
  AgentScanProgress progress() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmeter
