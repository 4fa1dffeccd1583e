#include "menubar/MenuBarLabelEntries.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "core/model/UnitInterval.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

namespace {

constexpr std::string_view unknown = "—";

MenuBarLabelEntry share(std::string_view symbolName, std::optional<double> fraction) {
  return {std::string(symbolName), fraction ? MetricFormatter::percent(clampToUnit(*fraction)) : std::string(unknown),
          "100%"};
}

MenuBarLabelEntry rate(std::string_view symbolName, const std::string& description) {
  // Before the first rate the description is a word, too long for a label.
  const bool isKnown = description != QM_TR("正在采样");
  return {std::string(symbolName), isKnown ? description : std::string(unknown), "1023 KB/s"};
}

MenuBarLabelEntry tokens(std::int64_t count) {
  std::string value = MetricFormatter::tokens(count);
  constexpr std::string_view usual = "88.8K";
  return {std::string(symbol(MonitorComponentKind::agentTokens)), std::move(value), std::string(usual)};
}

MenuBarLabelEntry heat(const SystemSnapshot& system) {
  const std::string name(symbol(MonitorComponentKind::fan));
  if (system.fanRPM) return {name, std::to_string(*system.fanRPM) + " RPM", "8888 RPM"};
  return {name, system.thermalState, {}};
}

std::vector<MenuBarLabelEntry> limits(const AgentUsageSnapshot& agents) {
  const std::string_view name = symbol(MonitorComponentKind::agentLimits);
  std::vector<MenuBarLabelEntry> entries;
  for (const std::optional<double>& used : {agents.primaryLimitUsed, agents.weeklyLimitUsed}) {
    if (used) entries.push_back(share(name, used));
  }
  if (entries.empty()) entries.push_back(share(name, std::nullopt));
  return entries;
}

MenuBarLabelEntry wifi(const QuickStatusSnapshot& quick) {
  const bool isConnected = quick.connection == QuickConnection::wifi;
  std::string value(unknown);
  if (isConnected && quick.wifiRSSI) value = std::to_string(*quick.wifiRSSI) + " dBm";
  return {std::string(quick.networkSymbol()), std::move(value), "-88 dBm"};
}

MenuBarLabelEntry audio(const QuickStatusSnapshot& quick) {
  std::string_view name = symbol(MonitorComponentKind::audio);
  if (quick.output) name = quick.output->symbol();
  if (quick.muted == true) name = "speaker.slash.fill";
  return share(name, quick.volume);
}

}  // namespace

MonitorComponentKind chosenMenuBarMetric(const PreferenceStore& preferences) {
  const auto chosen = monitorComponentKindFromRawValue(preferences.value(SettingsKeys::menuBarMetric));
  return chosen.value_or(*monitorComponentKindFromRawValue(SettingsKeys::menuBarMetric.defaultValue));
}

std::vector<MenuBarLabelEntry> menuBarLabelEntries(MonitorComponentKind metric, const SystemSnapshot& system,
                                                   const AgentUsageSnapshot& agents, const QuickStatusSnapshot& quick) {
  switch (metric) {
    case MonitorComponentKind::cpu:
      return {share(symbol(metric), system.cpuUsage)};
    case MonitorComponentKind::memory:
      return {share(symbol(metric), system.memoryUsage)};
    case MonitorComponentKind::disk:
      return {share(symbol(metric), system.diskTotal == unknown ? std::nullopt : std::optional(system.diskUsage))};
    case MonitorComponentKind::battery:
      return {share(symbol(metric), system.batteryLevel)};
    case MonitorComponentKind::network:
      return {rate("arrow.down", system.downloadSpeed), rate("arrow.up", system.uploadSpeed)};
    case MonitorComponentKind::fan:
      return {heat(system)};
    case MonitorComponentKind::agentTokens:
      return {tokens(agents.todayTokens())};
    case MonitorComponentKind::agentLimits:
      return limits(agents);
    case MonitorComponentKind::wifi:
      return {wifi(quick)};
    case MonitorComponentKind::audio:
      return {audio(quick)};
  }
  return {};
}

}  // namespace quillmeter
