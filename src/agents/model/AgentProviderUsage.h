#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "agents/model/AgentTokenMetrics.h"
#include "agents/model/AgentUsageRange.h"
#include "base/Date.h"

namespace quillmeter {

// The figures of one agent in one scan.
struct AgentProviderUsage {
  std::string id;      // "codex"
  std::string name;    // display name
  std::string symbol;  // name of the symbol shown beside it
  AgentTokenMetrics todayMetrics;
  AgentTokenMetrics weekMetrics;
  AgentTokenMetrics monthMetrics;
  AgentTokenMetrics currentSessionMetrics;  // of the session with the latest activity
  bool isDetected = false;                  // a log file or a session was found
  std::optional<Date> lastActivity;
  // Files or sources that could not be read; absent when the scan counted none because there was nothing to scan.
  std::optional<std::int64_t> unreadableSourceCount;

  const AgentTokenMetrics& metrics(AgentUsageRange range) const;
  bool isIncomplete() const { return unreadableSourceCount.value_or(0) > 0; }
  // What has to be said beside the figures; empty for most.
  std::string note() const;

  friend bool operator==(const AgentProviderUsage&, const AgentProviderUsage&) = default;
};

}  // namespace quillmeter
