#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "agents/model/AgentUsageSnapshot.h"
#include "ui/UiServices.h"

namespace quillmeter {

class BarChart;

// Shows the usage of a range by hour or day, with the one that goes on marked. Before the first scan the range is not
// called empty.
void showUsageBars(BarChart& chart, const AgentUsageSnapshot& agents, AgentUsageRange range,
                   const UiServices& services);

// Which hour or day goes on at `now`.
std::optional<std::size_t> currentBucket(const std::vector<AgentUsageBucket>& buckets, Date now);

}  // namespace quillmeter
