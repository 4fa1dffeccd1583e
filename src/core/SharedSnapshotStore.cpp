#include "core/SharedSnapshotStore.h"

#include <utility>

#include "core/model/WidgetSharedSnapshot.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

void SharedSnapshotStore::save(const SystemSnapshot& system, const AgentUsageSnapshot& agents) {
  if (suite_ == nullptr) return;
  auto record = encodeWidgetSharedSnapshot({.cpuUsage = system.cpuUsage,
                                            .memoryUsage = system.memoryUsage,
                                            .diskUsage = system.diskUsage,
                                            .batteryLevel = system.batteryLevel,
                                            .todayTokens = agents.todayTokens(),
                                            .weekTokens = agents.weekTokens(),
                                            .primaryLimitUsed = agents.primaryLimitUsed,
                                            .weeklyLimitUsed = agents.weeklyLimitUsed,
                                            .updatedAt = clock_.now()});
  if (!record) return;
  [[maybe_unused]] const auto written =
      suite_->set(SettingsKeys::sharedSnapshotKey, PreferenceData{std::move(*record)});
}

}  // namespace quillmeter
