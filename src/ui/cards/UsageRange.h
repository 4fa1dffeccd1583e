#pragma once

#include <string>
#include <vector>

#include "agents/model/AgentUsageRange.h"
#include "ui/UiServices.h"
#include "ui/widgets/SegmentedControl.h"

namespace quillmeter {

// The range whose usage is shown: one setting for all views, chosen in any of them.
AgentUsageRange chosenUsageRange(const UiServices& services);
// By its raw value. A choice that cannot be stored is told.
void chooseUsageRange(const UiServices& services, const std::string& range);
// All ranges in the interface language, to choose from.
std::vector<SegmentedControl::Segment> usageRangeSegments();

}  // namespace quillmeter
