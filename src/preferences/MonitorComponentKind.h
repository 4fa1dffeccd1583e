#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quillmeter {

// The components that the dashboard and the menu bar can show.
enum class MonitorComponentKind { cpu, memory, disk, battery, network, fan, agentTokens, agentLimits, wifi, audio };

inline constexpr std::array<MonitorComponentKind, 10> allMonitorComponentKinds = {
    MonitorComponentKind::cpu,         MonitorComponentKind::memory,      MonitorComponentKind::disk,
    MonitorComponentKind::battery,     MonitorComponentKind::network,     MonitorComponentKind::fan,
    MonitorComponentKind::agentTokens, MonitorComponentKind::agentLimits, MonitorComponentKind::wifi,
    MonitorComponentKind::audio};

enum class MonitorComponentCategory { system, agents };

// "agentTokens": what is stored.
std::string_view rawValue(MonitorComponentKind kind);
std::optional<MonitorComponentKind> monitorComponentKindFromRawValue(std::string_view rawValue);
std::string title(MonitorComponentKind kind);
// A second line on the settings pages, for those that have one.
std::optional<std::string> subtitle(MonitorComponentKind kind);
// A shorter title for the chooser of the menu bar's figure.
std::string menuBarTitle(MonitorComponentKind kind);
std::string_view symbol(MonitorComponentKind kind);
// Six hexadecimal digits, RGB.
std::string_view tint(MonitorComponentKind kind);
MonitorComponentCategory category(MonitorComponentKind kind);
// "system", "agents"
std::string_view rawValue(MonitorComponentCategory category);

}  // namespace quillmeter
