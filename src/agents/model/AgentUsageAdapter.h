#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "agents/model/AgentTokenMetrics.h"
#include "base/Date.h"

namespace quillmeter {

// One model response that consumed tokens.
struct AdapterUsageEvent {
  std::string id;  // unique within its source
  Date date;
  AgentTokenMetrics metrics;
  friend bool operator==(const AdapterUsageEvent&, const AdapterUsageEvent&) = default;
};

// One conversation of an agent.
struct AdapterUsageSession {
  std::string id;
  std::vector<AdapterUsageEvent> events;
  std::optional<Date> activityDate;  // where the source records the last activity apart from the events

  AgentTokenMetrics metrics() const;         // sum over the events
  std::optional<Date> lastActivity() const;  // activityDate, else the latest event, else absent
  friend bool operator==(const AdapterUsageSession&, const AdapterUsageSession&) = default;
};

// Reads the usage that one agent leaves on this machine. Owned by the collector and used on its queue only; keeps
// per-file caches between calls. Never throws: what cannot be read is skipped and counted.
class AgentUsageAdapter {
 public:
  virtual ~AgentUsageAdapter() = default;
  // Sessions below `root` with activity at or after `since`.
  virtual std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) = 0;
  virtual void clearCache() {}
  // Sources (databases, archives, files) that could not be read in the last call of sessions().
  virtual int unreadableSourceCount() const { return 0; }
};

}  // namespace quillmeter
