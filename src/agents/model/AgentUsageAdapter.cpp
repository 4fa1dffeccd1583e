#include "agents/model/AgentUsageAdapter.h"

namespace quillmeter {

AgentTokenMetrics AdapterUsageSession::metrics() const {
  AgentTokenMetrics sum;
  for (const AdapterUsageEvent& event : events) sum += event.metrics;
  return sum;
}

std::optional<Date> AdapterUsageSession::lastActivity() const {
  if (activityDate) return activityDate;
  std::optional<Date> latest;
  for (const AdapterUsageEvent& event : events) {
    if (!latest || event.date > *latest) latest = event.date;
  }
  return latest;
}

}  // namespace quillmeter
