#pragma once

#include <vector>

#include "access/AgentAuthorizationFeedback.h"
#include "access/model/AgentLogProvider.h"
#include "ui/UiServices.h"
#include "ui/widgets/Notice.h"

namespace quillmeter {

// What becomes of the switch of a connected agent that the user once turned off.
enum class HandMadeOff {
  stays,       // where the agents are chosen by the program, or the switch stands beside the button
  isTurnedOn,  // where choosing the agent is all that the user can do to have it counted
};

// Leads through granting the agents' folders, one picker after another; nothing happens while another such flow runs.
// Who connects an agent wants it counted: a switch that was never touched is turned on.
void connectAgents(const UiServices& services, const std::vector<AgentLogProvider>& providers,
                   HandMadeOff handMadeOff = HandMadeOff::stays);

// How the end of a flow is shown.
Notice::Kind noticeKind(AgentAuthorizationFeedback::Kind kind);

}  // namespace quillmeter
