#pragma once

#include <functional>
#include <vector>

#include "access/AgentAuthorizationFeedback.h"
#include "access/model/AgentLogProvider.h"
#include "ui/UiServices.h"
#include "ui/widgets/Notice.h"

namespace quillmeter {

// Leads through granting the agents' folders, one picker after another; nothing happens while another such flow runs.
// Who connects an agent wants it counted: a switch that was never touched is turned on. Calls `done` afterwards,
// however it ended.
void connectAgents(const UiServices& services, const std::vector<AgentLogProvider>& providers,
                   std::function<void()> done = {});

// How the end of a flow is shown.
Notice::Kind noticeKind(AgentAuthorizationFeedback::Kind kind);

}  // namespace quillmeter
