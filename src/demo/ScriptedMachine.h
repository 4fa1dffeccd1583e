#pragma once

#include "demo/MachineDescription.h"
#include "platform/Platform.h"
#include "platform/fake/FakeMachine.h"

namespace quillmeter {

// Makes the counters of a fake machine run as a description says. The description may be changed at any time; what it
// says then holds from the next step on.
class ScriptedMachine {
 public:
  // Both outlive it.
  ScriptedMachine(FakeMachine& machine, const MachineDescription& description);

  // Sets the facts of `secondsBeforeNow` seconds before the described moment (negative: after it), and lets the
  // counters run for `seconds`.
  void step(double seconds, double secondsBeforeNow);

 private:
  void runProcessors(double seconds, double load);
  void runNetwork(double seconds, double received, double sent);
  void setMemory(double used);
  void setBattery();

  FakeMachine& machine_;
  const MachineDescription& description_;
};

}  // namespace quillmeter
