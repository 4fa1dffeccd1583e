#include "preferences/MonitorComponentKind.h"

#include "base/L10n.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

namespace {

struct ComponentRow {
  std::string_view symbol;
  std::string_view tint;
};

// Network and Wi-Fi share a tint on purpose, memory and audio too.
constexpr std::array<ComponentRow, allMonitorComponentKinds.size()> rows = {{
    {"cpu", "4C8DFF"},
    {"memorychip", "A56BEB"},
    {"internaldrive", "FF9A52"},
    {"battery.100.bolt", "38B887"},
    {"arrow.up.arrow.down", "28A8B8"},
    {"fanblades.fill", "57A6C8"},
    {"sparkles", "FF6B5E"},
    {"gauge.with.dots.needle.50percent", "7668E8"},
    {"wifi", "28A8B8"},
    {"headphones", "A56BEB"},
}};

const ComponentRow& row(MonitorComponentKind kind) {
  return rows[static_cast<std::size_t>(kind)];
}

}  // namespace

std::string_view rawValue(MonitorComponentKind kind) {
  return SettingsKeys::menuBarMetrics[static_cast<std::size_t>(kind)];
}

std::optional<MonitorComponentKind> monitorComponentKindFromRawValue(std::string_view text) {
  for (const MonitorComponentKind kind : allMonitorComponentKinds) {
    if (rawValue(kind) == text) return kind;
  }
  return std::nullopt;
}

std::string title(MonitorComponentKind kind) {
  switch (kind) {
    case MonitorComponentKind::cpu:
      return "CPU";
    case MonitorComponentKind::memory:
      return QM_TR("内存");
    case MonitorComponentKind::disk:
      return QM_TR("磁盘");
    case MonitorComponentKind::battery:
      return QM_TR("电量");
    case MonitorComponentKind::network:
      return QM_TR("网络");
    case MonitorComponentKind::fan:
      return QM_TR("散热");
    case MonitorComponentKind::agentTokens:
      return QM_TR("Agent Token");
    case MonitorComponentKind::agentLimits:
      return QM_TR("使用额度");
    case MonitorComponentKind::wifi:
      return "Wi-Fi";
    case MonitorComponentKind::audio:
      return QM_TR("声音");
  }
  return {};
}

std::optional<std::string> subtitle(MonitorComponentKind kind) {
  switch (kind) {
    case MonitorComponentKind::fan:
      return QM_TR("风扇与热状态");
    case MonitorComponentKind::agentTokens:
      return QM_TR("8 个本地 Agent");
    case MonitorComponentKind::agentLimits:
      return QM_TR("Codex 时间窗口");
    case MonitorComponentKind::audio:
      return QM_TR("耳机与声音输出");
    default:
      return std::nullopt;
  }
}

std::string menuBarTitle(MonitorComponentKind kind) {
  if (kind == MonitorComponentKind::agentTokens) return QM_TR("Token");
  if (kind == MonitorComponentKind::agentLimits) return QM_TR("额度");
  return title(kind);
}

std::string_view symbol(MonitorComponentKind kind) {
  return row(kind).symbol;
}

std::string_view tint(MonitorComponentKind kind) {
  return row(kind).tint;
}

MonitorComponentCategory category(MonitorComponentKind kind) {
  const bool isAgents = kind == MonitorComponentKind::agentTokens || kind == MonitorComponentKind::agentLimits;
  return isAgents ? MonitorComponentCategory::agents : MonitorComponentCategory::system;
}

std::string_view rawValue(MonitorComponentCategory category) {
  return category == MonitorComponentCategory::agents ? "agents" : "system";
}

}  // namespace quillmeter
