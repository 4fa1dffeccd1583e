#include "ui/dashboard/AgentRows.h"

#include <algorithm>

#include "access/AgentAuthorizationCoordinator.h"
#include "access/AgentLogAccessManager.h"
#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"

namespace quillmeter {

namespace {

using State = AgentRow::State;

bool isSwitchedOn(const UiServices& services, AgentLogProvider provider) {
  return services.preferences.boolean(monitoringSettingsKey(provider)).value_or(false);
}

bool wasSwitchedOff(const UiServices& services, AgentLogProvider provider) {
  return !isSwitchedOn(services, provider) && services.preferences.domain().contains(monitoringSettingsKey(provider));
}

State stateOf(const UiServices& services, AgentLogProvider provider) {
  if (services.access.location(provider)) {
    const bool counts =
        services.preferences.value(SettingsKeys::tokenMonitoringEnabled) && isSwitchedOn(services, provider);
    return counts ? State::connected : State::switchedOff;
  }
  return services.access.looksInstalled(provider) ? State::found : State::notFound;
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
  if (unreadableSources > 0) return L10n::format(QM_TR("%d 个来源无法读取"), {std::to_string(unreadableSources)});
  if (hasNoFigures) return QM_TR("已读取日志 · 千问暂未提供 Token 数字");
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
    row.unreadableSources = usage->unreadableSourceCount.value_or(0);
    row.hasLogs = usage->isDetected;
    row.hasNoFigures = provider == AgentLogProvider::qwenOffice && usage->isDetected &&
                       usage->monthMetrics.totalTokens == 0 && usage->weekMetrics.totalTokens == 0;
  }
  return rows;
}

std::vector<AgentLogProvider> connectableAgents(const UiServices& services) {
  std::vector<AgentLogProvider> providers;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    if (services.access.location(provider) || wasSwitchedOff(services, provider)) continue;
    if (services.access.looksInstalled(provider)) providers.push_back(provider);
  }
  return providers;
}

void connectAgents(const UiServices& services, const std::vector<AgentLogProvider>& providers) {
  services.authorization.connectInSequence(providers, [&services, providers](bool) {
    for (const AgentLogProvider provider : providers) {
      if (!services.access.location(provider) || isSwitchedOn(services, provider)) continue;
      if (wasSwitchedOff(services, provider)) continue;
      const auto stored = services.preferences.set(monitoringSettingsKey(provider), true);
      if (!stored) return services.actions.preferenceFailed(stored.error());
    }
  });
}

}  // namespace quillmeter
