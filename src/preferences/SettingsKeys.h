#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "preferences/Setting.h"

namespace quillmeter {

class PreferenceStore;

// Every setting of the program: each key, its type and its default stand here and nowhere else.
namespace SettingsKeys {

inline constexpr std::array<std::string_view, 3> appThemes = {"light", "system", "dark"};
inline constexpr std::array<std::string_view, 3> appLanguages = {"system", "zh-Hans", "en"};
inline constexpr std::array<std::string_view, 4> menuBarStyles = {"metrics", "systemTrio", "resourceTrio", "symbol"};
inline constexpr std::array<std::string_view, 10> menuBarMetrics = {
    "cpu", "memory", "disk", "battery", "network", "fan", "agentTokens", "agentLimits", "wifi", "audio"};
inline constexpr std::array<std::string_view, 3> agentUsageRanges = {"today", "week", "month"};
inline constexpr std::string_view defaultMenuBarStyle = "systemTrio";

inline constexpr auto registered = DefaultKind::registered;
inline constexpr auto supplied = DefaultKind::supplied;

// clang-format off
inline constexpr StringSetting  appTheme{"appTheme", "settings.appTheme", "light", registered, appThemes};
inline constexpr StringSetting  appLanguage{"appLanguage", "settings.appLanguage", "zh-Hans", registered, appLanguages};
inline constexpr BooleanSetting launchAtLogin{"launchAtLogin", "settings.launchAtLogin", false};
inline constexpr BooleanSetting showInDock{"showInDock", "settings.showInDock", true};
inline constexpr DataSetting    dashboardLayout{"dashboardLayout", "settings.dashboardLayout.v2"};
inline constexpr DataSetting    menuBarLayout{"menuBarLayout", "settings.menuBarLayout.v2"};
inline constexpr StringSetting  dashboardDestination{"dashboardDestination", "navigation.dashboardDestination", "overview"};
inline constexpr StringSetting  agentUsageRange{"agentUsageRange", "navigation.agentUsageRange", "today", supplied, agentUsageRanges};
inline constexpr StringSetting  menuBarStyle{"menuBarStyle", "settings.menuBar.style", defaultMenuBarStyle, registered, menuBarStyles};
inline constexpr BooleanSetting compactIconColor{"compactIconColor", "settings.menuBar.color", true};
inline constexpr BooleanSetting compactIconArc{"compactIconArc", "settings.menuBar.volumeArc", false};
inline constexpr RealSetting    compactIconSize{"compactIconSize", "settings.menuBar.iconSize", 22.0, supplied, 8.0, 64.0};
inline constexpr RealSetting    compactIconStroke{"compactIconStroke", "settings.menuBar.stroke", 1.8, supplied, 0.5, 8.0};
inline constexpr StringSetting  compactIconSymbol{"compactIconSymbol", "settings.menuBar.symbol", "waveform.path.ecg"};
inline constexpr BooleanSetting compactAudioSymbol{"compactAudioSymbol", "settings.menuBar.audioSymbol", true};
inline constexpr LegacySetting  quickStatusPanel{"quickStatusPanel", "settings.quickStatusPanel"};
inline constexpr StringSetting  menuBarMetric{"menuBarMetric", "settings.menuBarMetric", "cpu", registered, menuBarMetrics};
inline constexpr BooleanSetting tokenMonitoringEnabled{"tokenMonitoringEnabled", "settings.agentTokens.enabled", true, registered};
inline constexpr BooleanSetting codexMonitoringEnabled{"codexMonitoringEnabled", "settings.agentTokens.codex", true, registered};
inline constexpr BooleanSetting claudeMonitoringEnabled{"claudeMonitoringEnabled", "settings.agentTokens.claude", true, registered};
inline constexpr BooleanSetting qwenOfficeMonitoringEnabled{"qwenOfficeMonitoringEnabled", "settings.agentTokens.qwenOffice", false, registered};
inline constexpr BooleanSetting workBuddyMonitoringEnabled{"workBuddyMonitoringEnabled", "settings.agentTokens.workBuddy", false, registered};
inline constexpr BooleanSetting opencodeMonitoringEnabled{"opencodeMonitoringEnabled", "settings.agentTokens.opencode", false, registered};
inline constexpr BooleanSetting hermesMonitoringEnabled{"hermesMonitoringEnabled", "settings.agentTokens.hermes", false, registered};
inline constexpr BooleanSetting openclawMonitoringEnabled{"openclawMonitoringEnabled", "settings.agentTokens.openclaw", false, registered};
inline constexpr BooleanSetting piMonitoringEnabled{"piMonitoringEnabled", "settings.agentTokens.pi", false, registered};
inline constexpr RealSetting    refreshInterval{"refreshInterval", "settings.refreshInterval", 2.0, registered, 1.0, 3600.0};  // seconds
inline constexpr StringSetting  settingsPage{"settingsPage", "settings.selectedPage", "general"};
inline constexpr IntegerSetting onboardingVersion{"onboardingVersion", "onboarding.completedVersion", 0, 0, 1'000'000};
// clang-format on

inline constexpr std::int64_t currentOnboardingVersion = 1;
inline constexpr std::string_view standardDomainName = "com.kesto.Quillmeter";  // the program's own domain
inline constexpr std::string_view sharedSuiteName = "group.com.kesto.Quillmeter";
inline constexpr std::string_view sharedSnapshotKey = "monitor.snapshot.v1";
inline constexpr std::string_view sharedLanguageKey = appLanguage.key;

using AnySetting = std::variant<StringSetting, BooleanSetting, IntegerSetting, RealSetting, DataSetting, LegacySetting>;

// All rows, in the order above.
std::span<const AnySetting> all();
// The row of a key ("settings.appTheme"); null when there is none.
const AnySetting* find(std::string_view key);
std::string_view keyOf(const AnySetting& setting);

// Puts the fourteen registered defaults into the registration layer. Nothing is written.
void registerDefaults(PreferenceStore& store);

// The stored style of the item in the panel; a text that names none counts as the default style, for everybody who reads
// or draws by it.
std::string_view chosenMenuBarStyle(const PreferenceStore& store);

// Marks the onboarding as done for a user who comes from an older version: one whose written domain holds settings but
// no onboarding version. Run at launch before the first window.
void prepareOnboardingForLaunch(PreferenceStore& store, const std::optional<std::string>& bundleIdentifier);

}  // namespace SettingsKeys

}  // namespace quillmeter
