#pragma once

#include <string>

#include "agents/model/AgentUsageSnapshot.h"
#include "core/model/SystemSnapshot.h"

namespace quillmeter {

// "12.3K Token today", in the interface language.
std::string todayTokensText(const AgentUsageSnapshot& agents);

// The figures of the tooltip in the interface language, a few plain lines; what is not known is left out. Pure.
std::string trayTooltipText(const SystemSnapshot& system, const AgentUsageSnapshot& agents);

}  // namespace quillmeter
