#include "ui/cards/AgentCardState.h"

#include <algorithm>
#include <cmath>

#include "access/model/AgentLogProvider.h"
#include "core/model/MetricFormatter.h"

namespace quillmeter {

namespace {

constexpr double secondsPerMinute = 60;

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

std::string ageText(Date lastActivity, Date now) {
  const bool isFresh = std::abs(now.secondsSince(lastActivity)) < secondsPerMinute;
  return MetricFormatter::relative(lastActivity, isFresh ? lastActivity : now);
}

}  // namespace quillmeter
