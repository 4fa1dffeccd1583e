#pragma once

#include <string>

#include "agents/model/AgentProviderUsage.h"

namespace quillmeter::ctl {

// What has to be said beside the figures of an agent whose logs were read; empty for most.
std::string agentNote(const AgentProviderUsage& usage);

}  // namespace quillmeter::ctl
