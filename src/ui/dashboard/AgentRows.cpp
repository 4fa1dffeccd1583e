#include "ui/dashboard/AgentRows.h"

#include <algorithm>

#include "access/AgentLogAccessManager.h"
#include "access/AgentSwitch.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

namespace {

using State = AgentRow::State;

// As the last scan left it: a grant that is stored is usable, and nothing here looks at a folder, which may hang.
State stateOf(const UiServices& services, AgentLogProvider provider) {
  if (services.access.grantedFolder(provider)) {
    const bool counts = services.preferences.value(SettingsKeys::tokenMonitoringEnabled) &&
                        isSwitchedOn(services.preferences, provider);
    return counts ? State::connected : State::switchedOff;
  }
  const auto& detected = services.store.detectedAgentProviders();
  return std::ranges::find(detected, provider) == detected.end() ? State::notFound : State::found;
}

}  // namespace

std::string AgentRow::stateText() const {
  switch (state) {
    case State::connected:
      break;
    case State::switchedOff:
      return QM_TR("已关闭");
    case State::found:
      return QM_TR("已找到，未连接");
    case State::notFound:
      return QM_TR("未找到");
  }
  if (!note.empty()) return note;
  return metrics && !hasLogs ? QM_TR("本月没有日志") : QM_TR("已连接");
}

std::vector<AgentRow> agentRows(const UiServices& services, AgentUsageRange range) {
  const auto& usages = services.store.agents().providers;
  std::vector<AgentRow> rows;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    AgentRow& row = rows.emplace_back();
    row.provider = provider;
    row.state = stateOf(services, provider);
    const auto usage = std::ranges::find(usages, rawValue(provider), &AgentProviderUsage::id);
    if (usage == usages.end() || row.state != State::connected) continue;
    row.metrics = usage->metrics(range);
    row.lastActivity = usage->lastActivity;
    row.isIncomplete = usage->isIncomplete();
    row.hasLogs = usage->isDetected;
    row.note = usage->note();
  }
  return rows;
}

std::vector<AgentLogProvider> connectableAgents(const UiServices& services) {
  std::vector<AgentLogProvider> providers;
  for (const AgentLogProvider provider : services.store.detectedAgentProviders()) {
    if (services.access.grantedFolder(provider) || wasSwitchedOff(services.preferences, provider)) continue;
    providers.push_back(provider);
  }
  return providers;
}

}  // namespace quillmeter
