#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "access/model/AgentLogLocation.h"
#include "access/model/AgentLogProvider.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

enum class AgentConnection {
  connected,  // the granted folder can be read
  found,      // looks installed, no folder granted
  notFound,
  unusable  // a folder was granted, but cannot be used any more; the grant is forgotten
};

// "connected", "found", "notFound", "unusable".
std::string_view rawValue(AgentConnection connection);

// Where one agent stands on this machine.
struct AgentOverview {
  AgentLogProvider provider = AgentLogProvider::codex;
  bool detected = false;  // granted or installed
  bool enabled = false;   // its own switch, whatever the switch of all is
  AgentConnection connection = AgentConnection::notFound;
  std::optional<AgentLogLocation> location;             // when connected
  std::optional<std::filesystem::path> unusableFolder;  // when unusable
};

AgentOverview agentOverview(ToolContext& context, AgentLogProvider provider);
std::vector<AgentOverview> agentOverviews(ToolContext& context);

// The command that connects the agent, as the user would type it: "quillmeterctl connect codex".
std::string connectCommand(const ToolContext& context, AgentLogProvider provider);

}  // namespace quillmeter::ctl
