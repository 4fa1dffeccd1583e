#pragma once

#include <optional>
#include <string>
#include <vector>

#include "agents/model/AgentUsageSnapshot.h"
#include "base/Calendar.h"
#include "base/LocaleConventions.h"
#include "core/model/SampleHistory.h"
#include "core/model/SystemSnapshot.h"
#include "ctl/Console.h"
#include "ctl/TerminalScreen.h"

namespace quillmeter::ctl {

// All that one frame of the live view shows.
struct WatchFrame {
  const SystemSnapshot& system;
  const SampleHistory& cpuHistory;
  const SampleHistory& memoryHistory;
  const SampleHistory& networkHistory;
  const AgentUsageSnapshot& agents;
  std::optional<std::string> activity;    // what is going on, or what came of it
  const std::vector<std::string>& hints;  // commands that connect the agents that were found
  const Calendar& calendar;
  const LocaleConventions& locale;
  Date now;
};

// The frame as at most `size.rows` lines of at most `size.columns` cells: the machine, tokens, sessions, limits, what
// there is to say, and the keys in the last line. A narrow terminal loses sparklines and details first, a low one the
// lower lines of the body.
std::vector<std::string> watchLines(const Console& console, const WatchFrame& frame, ScreenSize size);

// One tick in one line, for a log or another program: local time and figures, two blanks apart.
std::string watchPlainLine(const WatchFrame& frame);

}  // namespace quillmeter::ctl
