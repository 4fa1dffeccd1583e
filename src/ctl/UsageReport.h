#pragma once

#include <vector>

#include "agents/AgentLogSource.h"
#include "agents/model/AgentUsageRange.h"
#include "agents/model/AgentUsageSnapshot.h"
#include "base/Calendar.h"
#include "base/Date.h"
#include "ctl/ToolContext.h"

namespace quillmeter::ctl {

struct UsageReportInput {
  const AgentUsageSnapshot& snapshot;
  const std::vector<AgentLogSource>& sources;
  const Calendar& calendar;
  Date now;
  AgentUsageRange range = AgentUsageRange::today;  // of the bars
  bool foldersGiven = false;                       // on the command line: connecting is no subject then
};

// The text form of `usage`: totals, agents, bars, active sessions, Codex limits, and what hinders the count, with the
// commands that help.
void printUsageReport(ToolContext& context, const UsageReportInput& input);

}  // namespace quillmeter::ctl
