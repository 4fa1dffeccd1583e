#include "ui/cards/AgentCardState.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "access/model/AgentLogProvider.h"
#include "base/L10n.h"
#include "core/model/MetricFormatter.h"

namespace quillmeter {

namespace {

constexpr std::int64_t minutesPerDay = 24 * 60;
constexpr double secondsPerMinute = 60;

std::int64_t minuteOf(Date date) {
  return date.microseconds / (60 * Date::microsecondsPerSecond);
}

std::string twoDigits(std::int64_t value) {
  return fmt::format("{:02}", value);
}

const std::vector<std::string>* missingNames(const AgentUsageSnapshot& snapshot) {
  const bool isMissing =
      snapshot.scanStatus && snapshot.scanStatus->kind == AgentScanStatus::Kind::missingAuthorization;
  return isMissing ? &snapshot.scanStatus->names : nullptr;
}

std::optional<AgentCardState> stateBeforeFirstScan(const AgentUsageSnapshot& snapshot, bool monitoringEnabled) {
  if (!monitoringEnabled || snapshot.scanStatus == AgentScanStatus::monitoringDisabled()) {
    return AgentCardState::disabled;
  }
  if (snapshot.scanStatus == AgentScanStatus::reading() && snapshot.lastUpdated <= Date::distantPast()) {
    return AgentCardState::reading;
  }
  return std::nullopt;
}

}  // namespace

AgentCardState agentCardState(const AgentUsageSnapshot& snapshot, bool monitoringEnabled) {
  if (const auto state = stateBeforeFirstScan(snapshot, monitoringEnabled)) return *state;
  const std::vector<std::string>* missing = missingNames(snapshot);
  const std::size_t unconnected = missing == nullptr ? 0 : missing->size();
  return snapshot.providers.size() <= unconnected ? AgentCardState::notConnected : AgentCardState::measured;
}

AgentCardState codexCardState(const AgentUsageSnapshot& snapshot, bool monitoringEnabled) {
  if (const auto state = stateBeforeFirstScan(snapshot, monitoringEnabled)) return *state;
  const auto codex = std::ranges::find(snapshot.providers, rawValue(AgentLogProvider::codex), &AgentProviderUsage::id);
  if (codex == snapshot.providers.end()) return AgentCardState::notConnected;
  const std::vector<std::string>* missing = missingNames(snapshot);
  const bool isMissing = missing != nullptr && std::ranges::find(*missing, codex->name) != missing->end();
  return isMissing ? AgentCardState::notConnected : AgentCardState::measured;
}

std::optional<std::string> timeLeftText(Date resetAt, Date now) {
  if (resetAt <= now) return std::nullopt;
  const std::int64_t minutes = std::max<std::int64_t>(minuteOf(resetAt) - minuteOf(now), 1);
  const std::string clock = twoDigits(minutes / 60 % 24) + ":" + twoDigits(minutes % 60);
  if (minutes < minutesPerDay) return clock;
  return L10n::format(QM_TR("%d 天 %@"), {std::to_string(minutes / minutesPerDay), clock});
}

std::string ageText(Date lastActivity, Date now) {
  const bool isFresh = std::abs(now.secondsSince(lastActivity)) < secondsPerMinute;
  return MetricFormatter::relative(lastActivity, isFresh ? lastActivity : now);
}

}  // namespace quillmeter
