#pragma once

#include <vector>

#include "agents/model/AgentUsageSnapshot.h"
#include "base/Calendar.h"
#include "ui/widgets/BarChart.h"

namespace quillmeter {

// The hours of today or the days of the week or month as bars, with the one that holds `now` marked.
std::vector<ChartBar> usageBars(const std::vector<AgentUsageBucket>& buckets, AgentUsageRange range, Date now,
                                const Calendar& calendar);

}  // namespace quillmeter
