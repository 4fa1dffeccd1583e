#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "agents/model/AgentActivitySession.h"
#include "agents/model/AgentProviderUsage.h"
#include "agents/model/AgentScanStatus.h"
#include "agents/model/AgentTokenMetrics.h"
#include "agents/model/AgentUsageRange.h"
#include "base/Date.h"

namespace quillmeter {

class Calendar;

// The usage of one hour or day, by the first instant of that hour or day.
struct AgentUsageBucket {
  Date start;
  AgentTokenMetrics metrics;
  friend bool operator==(const AgentUsageBucket&, const AgentUsageBucket&) = default;
};

// The result of one scan over all agents. A plain value: made by AgentUsageCollector, published by the store, shown,
// encoded.
struct AgentUsageSnapshot {
  AgentTokenMetrics todayMetrics;
  AgentTokenMetrics weekMetrics;
  AgentTokenMetrics monthMetrics;
  AgentTokenMetrics currentSessionMetrics;     // of the session with the latest activity over all providers
  std::vector<AgentUsageBucket> hourlyUsage;   // one an hour of today
  std::vector<AgentUsageBucket> weeklyUsage;   // one a day of this week
  std::vector<AgentUsageBucket> monthlyUsage;  // one a day of this month
  std::vector<AgentProviderUsage> providers;
  std::optional<double> primaryLimitUsed;  // fraction 0 ... 1 of the Codex window of 300 minutes
  std::optional<double> weeklyLimitUsed;   // of its window of 10,080 minutes
  std::optional<Date> primaryResetAt;
  std::optional<Date> weeklyResetAt;
  std::optional<Date> limitsObservedAt;  // when Codex wrote down the limits
  Date lastUpdated = Date::distantPast();
  std::optional<AgentScanStatus> scanStatus;  // absent: the scan ended with nothing to report
  std::vector<AgentActivitySession> recentSessions;

  // What is shown until the first scan ends.
  static const AgentUsageSnapshot& empty();

  std::int64_t todayTokens() const { return todayMetrics.totalTokens; }
  std::int64_t weekTokens() const { return weekMetrics.totalTokens; }
  std::int64_t currentSessionTokens() const { return currentSessionMetrics.totalTokens; }
  std::optional<std::string> scanMessage(const LocaleConventions& locale) const;
  const AgentTokenMetrics& metrics(AgentUsageRange range) const;
  // hourlyUsage, weeklyUsage or monthlyUsage.
  const std::vector<AgentUsageBucket>& buckets(AgentUsageRange range) const;
  // Whether it was made on another day than `now`: the totals of a day end with it, not up to half a minute later. Not
  // before the first scan.
  bool isOfAnotherDay(const Calendar& calendar, Date now) const;
  // Sessions active at `now`, newest first; equal times keep their order in recentSessions.
  std::vector<AgentActivitySession> activeSessions(Date now) const;

  friend bool operator==(const AgentUsageSnapshot&, const AgentUsageSnapshot&) = default;
};

}  // namespace quillmeter
