#pragma once

#include <optional>
#include <string>
#include <vector>

#include "access/model/AgentLogProvider.h"
#include "agents/model/AgentUsageSnapshot.h"
#include "ui/UiServices.h"

namespace quillmeter {

// What the agents' table says of one agent.
struct AgentRow {
  enum class State { connected, switchedOff, found, notFound };
  AgentLogProvider provider = AgentLogProvider::codex;
  State state = State::notFound;
  std::optional<AgentTokenMetrics> metrics;  // absent while it is not counted
  std::optional<Date> lastActivity;
  bool isIncomplete = false;  // some of its sources could not be read
  bool hasLogs = false;
  std::string note;
  friend bool operator==(const AgentRow&, const AgentRow&) = default;

  std::string stateText() const;
};

// All agents in the order of the catalogue, with their figures of the last scan.
std::vector<AgentRow> agentRows(const UiServices& services, AgentUsageRange range);

// The agents that were found here, are not connected and were not switched off by the user.
std::vector<AgentLogProvider> connectableAgents(const UiServices& services);

}  // namespace quillmeter
