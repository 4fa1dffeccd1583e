#pragma once

#include <string>
#include <string_view>

#include "agents/model/AgentUsageSnapshot.h"

namespace quillmeter {

// What the agents' cards have to show, as far as the last scan tells.
enum class AgentCardState {
  disabled,      // the master switch is off
  reading,       // no scan has ended yet
  notConnected,  // there is no agent whose folder was given
  measured
};

AgentCardState agentCardState(const AgentUsageSnapshot& snapshot, bool monitoringEnabled);

// The same for the one agent that reports limits.
AgentCardState codexCardState(const AgentUsageSnapshot& snapshot, bool monitoringEnabled);

// How long ago something was used, in whole minutes: a second more or less says nothing here, and would have to be
// counted.
std::string ageText(Date lastActivity, Date now);

}  // namespace quillmeter
