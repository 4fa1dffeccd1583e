#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quillmeter {

// The eight agents, in the order in which every list of them is shown and walked.
enum class AgentLogProvider { codex, claude, qwenOffice, workBuddy, opencode, hermes, openclaw, pi };

inline constexpr std::array<AgentLogProvider, 8> allAgentLogProviders = {
    AgentLogProvider::codex,    AgentLogProvider::claude, AgentLogProvider::qwenOffice, AgentLogProvider::workBuddy,
    AgentLogProvider::opencode, AgentLogProvider::hermes, AgentLogProvider::openclaw,   AgentLogProvider::pi};

// "codex", "qwenOffice" ...: id, part of preference keys, name on the command line.
std::string_view rawValue(AgentLogProvider provider);
std::optional<AgentLogProvider> agentLogProviderFromRawValue(std::string_view rawValue);
// Display name; localised where it is not a product's own name.
std::string title(AgentLogProvider provider);
// Name of the symbol shown beside it.
std::string_view symbol(AgentLogProvider provider);
// "~/.codex"
std::string_view expectedFolder(AgentLogProvider provider);
// "settings.agentTokens.codex": the switch of the provider.
std::string monitoringSettingsKey(AgentLogProvider provider);
// "settings.agentLogs.codex.bookmark.v2": where its folder grant is stored.
std::string bookmarkKey(AgentLogProvider provider);

}  // namespace quillmeter
