#include "agents/model/AgentUsageRange.h"

#include "base/L10n.h"

namespace quillmeter {

std::string_view rawValue(AgentUsageRange range) {
  switch (range) {
    case AgentUsageRange::today:
      return "today";
    case AgentUsageRange::week:
      return "week";
    case AgentUsageRange::month:
      break;
  }
  return "month";
}

std::optional<AgentUsageRange> agentUsageRangeFromRawValue(std::string_view text) {
  for (const AgentUsageRange range : allAgentUsageRanges) {
    if (rawValue(range) == text) return range;
  }
  return std::nullopt;
}

std::string title(AgentUsageRange range) {
  switch (range) {
    case AgentUsageRange::today:
      return QM_TR("今天");
    case AgentUsageRange::week:
      return QM_TR("本周");
    case AgentUsageRange::month:
      break;
  }
  return QM_TR("本月");
}

std::string courseTitle(AgentUsageRange range) {
  return L10n::format(range == AgentUsageRange::today ? QM_TR("%@，每小时") : QM_TR("%@，每天"), {title(range)});
}

}  // namespace quillmeter
