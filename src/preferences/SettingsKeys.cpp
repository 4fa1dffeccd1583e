#include "preferences/SettingsKeys.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "preferences/PreferenceStore.h"

namespace quillmeter::SettingsKeys {

namespace {

constexpr std::array<AnySetting, 29> rows = {
    appTheme,
    appLanguage,
    launchAtLogin,
    showInDock,
    dashboardLayout,
    menuBarLayout,
    dashboardDestination,
    agentUsageRange,
    menuBarStyle,
    compactIconColor,
    compactIconArc,
    compactIconSize,
    compactIconStroke,
    compactIconSymbol,
    compactAudioSymbol,
    quickStatusPanel,
    menuBarMetric,
    tokenMonitoringEnabled,
    codexMonitoringEnabled,
    claudeMonitoringEnabled,
    qwenOfficeMonitoringEnabled,
    workBuddyMonitoringEnabled,
    opencodeMonitoringEnabled,
    hermesMonitoringEnabled,
    openclawMonitoringEnabled,
    piMonitoringEnabled,
    refreshInterval,
    settingsPage,
    onboardingVersion,
};

// What an older version stored once a user had made any choice in it.
constexpr std::array<std::string_view, 14> upgradeMarks = {
    appTheme.key,
    appLanguage.key,
    launchAtLogin.key,
    showInDock.key,
    dashboardLayout.key,
    menuBarLayout.key,
    menuBarMetric.key,
    tokenMonitoringEnabled.key,
    codexMonitoringEnabled.key,
    claudeMonitoringEnabled.key,
    refreshInterval.key,
    settingsPage.key,
    "settings.agentLogs.codex.bookmark.v2",
    "settings.agentLogs.claude.bookmark.v2",
};

std::optional<PreferenceValue> registeredDefault(const AnySetting& setting) {
  return std::visit(
      [](const auto& row) -> std::optional<PreferenceValue> {
        if constexpr (requires { row.kind; }) {
          if (row.kind != registered) return std::nullopt;
          if constexpr (std::is_same_v<std::remove_cvref_t<decltype(row)>, StringSetting>) {
            return std::string(row.defaultValue);
          } else {
            return row.defaultValue;
          }
        } else {
          return std::nullopt;
        }
      },
      setting);
}

}  // namespace

std::span<const AnySetting> all() {
  return rows;
}

std::string_view keyOf(const AnySetting& setting) {
  return std::visit([](const auto& row) { return row.key; }, setting);
}

const AnySetting* find(std::string_view key) {
  const auto found = std::ranges::find(rows, key, keyOf);
  return found == rows.end() ? nullptr : &*found;
}

void registerDefaults(PreferenceStore& store) {
  std::vector<std::pair<std::string, PreferenceValue>> defaults;
  for (const AnySetting& setting : rows) {
    if (auto value = registeredDefault(setting)) defaults.emplace_back(keyOf(setting), std::move(*value));
  }
  store.registerDefaults(defaults);
}

std::string_view chosenMenuBarStyle(const PreferenceStore& store) {
  const auto named = std::ranges::find(menuBarStyles, store.value(menuBarStyle));
  return named == menuBarStyles.end() ? defaultMenuBarStyle : *named;
}

void prepareOnboardingForLaunch(PreferenceStore& store, const std::optional<std::string>& bundleIdentifier) {
  if (!bundleIdentifier || *bundleIdentifier != store.domain().name()) return;
  const auto written = store.domain().snapshot();
  if (!written || written->contains(onboardingVersion.key)) return;
  const bool isUpgrader =
      std::ranges::any_of(upgradeMarks, [&](std::string_view key) { return written->contains(key); });
  if (!isUpgrader) return;
  // Where nothing can be written the onboarding shows once more, which does no harm.
  (void)store.set(onboardingVersion.key, currentOnboardingVersion);
}

}  // namespace quillmeter::SettingsKeys
