#include "access/model/AgentLogProvider.h"

#include "base/L10n.h"

namespace quillmeter {

namespace {

struct ProviderRow {
  std::string_view rawValue;
  std::string_view productName;  // empty: the title is localised
  std::string_view symbol;
  std::string_view expectedFolder;
};

constexpr std::array<ProviderRow, allAgentLogProviders.size()> rows = {{
    {"codex", "Codex", "chevron.left.forwardslash.chevron.right", "~/.codex"},
    {"claude", "Claude Code", "terminal", "~/.claude"},
    {"qwenOffice", "", "doc.text.magnifyingglass", "~/.qwenworkcn"},
    {"workBuddy", "WorkBuddy", "person.2.fill", "~/.workbuddy"},
    {"opencode", "OpenCode", "chevron.left.slash.chevron.right", "~/.local/share/opencode"},
    {"hermes", "Hermes", "paperplane", "~/.hermes"},
    {"openclaw", "OpenClaw", "pawprint", "~/.openclaw"},
    {"pi", "Pi", "sparkle", "~/.pi/agent"},
}};

const ProviderRow& row(AgentLogProvider provider) {
  return rows[static_cast<std::size_t>(provider)];
}

}  // namespace

std::string_view rawValue(AgentLogProvider provider) {
  return row(provider).rawValue;
}

std::optional<AgentLogProvider> agentLogProviderFromRawValue(std::string_view text) {
  for (const AgentLogProvider provider : allAgentLogProviders) {
    if (rawValue(provider) == text) return provider;
  }
  return std::nullopt;
}

std::string title(AgentLogProvider provider) {
  if (provider == AgentLogProvider::qwenOffice) return QM_TR("千问办公");
  return std::string(row(provider).productName);
}

std::string_view symbol(AgentLogProvider provider) {
  return row(provider).symbol;
}

std::string_view expectedFolder(AgentLogProvider provider) {
  return row(provider).expectedFolder;
}

std::string monitoringSettingsKey(AgentLogProvider provider) {
  return "settings.agentTokens." + std::string(rawValue(provider));
}

std::string bookmarkKey(AgentLogProvider provider) {
  return "settings.agentLogs." + std::string(rawValue(provider)) + ".bookmark.v2";
}

}  // namespace quillmeter
