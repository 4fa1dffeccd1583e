#pragma once

#include <functional>

#include "ctl/ExitCode.h"

namespace CLI {
class App;
}

namespace quillmeter::ctl {

// What the command line chose to do; set while it is parsed, called afterwards.
using ChosenAction = std::function<ExitCode()>;

// One command of the tool, or a few that belong together. It declares its arguments, which are parsed into its own
// fields, and notes its action in `chosen` when the command line names it. Owned by CommandLine; one thread.
class Command {
 public:
  virtual ~Command() = default;
  virtual void declare(CLI::App& root, ChosenAction& chosen) = 0;
};

}  // namespace quillmeter::ctl
