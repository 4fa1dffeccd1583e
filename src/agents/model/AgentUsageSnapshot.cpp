#include "agents/model/AgentUsageSnapshot.h"

#include <algorithm>
#include <iterator>

#include "access/model/AgentLogProvider.h"
#include "base/Calendar.h"
#include "base/L10n.h"

namespace quillmeter {

namespace {

// The member of `record` (a snapshot or a provider's usage) that holds the metrics of a range.
template <typename Record>
const AgentTokenMetrics& metricsOf(const Record& record, AgentUsageRange range) {
  switch (range) {
    case AgentUsageRange::today:
      return record.todayMetrics;
    case AgentUsageRange::week:
      return record.weekMetrics;
    case AgentUsageRange::month:
      break;
  }
  return record.monthMetrics;
}

}  // namespace

bool AgentActivitySession::isActive(Date now) const {
  const double elapsed = now.secondsSince(lastActivity);
  return elapsed >= 0 && elapsed < static_cast<double>(activeSeconds);
}

const AgentTokenMetrics& AgentProviderUsage::metrics(AgentUsageRange range) const {
  return metricsOf(*this, range);
}

std::string AgentProviderUsage::note() const {
  if (isIncomplete()) return L10n::format(QM_TR("%d 个来源无法读取"), {std::to_string(*unreadableSourceCount)});
  const bool withoutFigures = isDetected && monthMetrics.totalTokens == 0 && weekMetrics.totalTokens == 0;
  if (withoutFigures && id == rawValue(AgentLogProvider::qwenOffice)) {
    return QM_TR("已读取日志 · 千问暂未提供 Token 数字");
  }
  return {};
}

const AgentTokenMetrics& AgentUsageSnapshot::metrics(AgentUsageRange range) const {
  return metricsOf(*this, range);
}

const AgentUsageSnapshot& AgentUsageSnapshot::empty() {
  static const AgentUsageSnapshot snapshot = [] {
    AgentUsageSnapshot initial;
    initial.scanStatus = AgentScanStatus::reading();
    return initial;
  }();
  return snapshot;
}

std::optional<std::string> AgentUsageSnapshot::scanMessage(const LocaleConventions& locale) const {
  if (!scanStatus) return std::nullopt;
  return scanStatus->message(locale);
}

const std::vector<AgentUsageBucket>& AgentUsageSnapshot::buckets(AgentUsageRange range) const {
  switch (range) {
    case AgentUsageRange::today:
      return hourlyUsage;
    case AgentUsageRange::week:
      return weeklyUsage;
    case AgentUsageRange::month:
      break;
  }
  return monthlyUsage;
}

std::vector<AgentActivitySession> AgentUsageSnapshot::activeSessions(Date now) const {
  std::vector<AgentActivitySession> active;
  std::copy_if(recentSessions.begin(), recentSessions.end(), std::back_inserter(active),
               [now](const AgentActivitySession& session) { return session.isActive(now); });
  std::stable_sort(active.begin(), active.end(), [](const AgentActivitySession& a, const AgentActivitySession& b) {
    return a.lastActivity > b.lastActivity;
  });
  return active;
}

bool AgentUsageSnapshot::isOfAnotherDay(const Calendar& calendar, Date now) const {
  return lastUpdated != Date::distantPast() && calendar.startOfDay(lastUpdated) != calendar.startOfDay(now);
}

}  // namespace quillmeter
