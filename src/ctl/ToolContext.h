#pragma once

#include <string>

#include "access/AgentLogAccessManager.h"
#include "base/Clock.h"
#include "base/LocaleConventions.h"
#include "ctl/Console.h"
#include "preferences/PreferenceStore.h"

namespace quillmeter::ctl {

// What the commands work with. Put together by main, which owns all of it and outlives the commands.
struct ToolContext {
  Console& console;
  PreferenceStore& preferences;
  AgentLogAccessManager& access;
  const Clock& clock;
  LocaleConventions locale;
  std::string toolCommand;  // how the user calls this tool: "quillmeterctl", "./run.sh"
};

}  // namespace quillmeter::ctl
