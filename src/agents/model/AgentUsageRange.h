#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quillmeter {

// The three intervals that every total is kept for; each begins at a border of the user's calendar.
enum class AgentUsageRange { today, week, month };

inline constexpr std::array<AgentUsageRange, 3> allAgentUsageRanges = {AgentUsageRange::today, AgentUsageRange::week,
                                                                       AgentUsageRange::month};

// "today", "week", "month".
std::string_view rawValue(AgentUsageRange range);
std::optional<AgentUsageRange> agentUsageRangeFromRawValue(std::string_view rawValue);
// Localised: "今天", "本周", "本月".
std::string title(AgentUsageRange range);
// What its bars are called: "今天，每小时", "本周，每天".
std::string courseTitle(AgentUsageRange range);

}  // namespace quillmeter
