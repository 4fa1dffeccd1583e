#pragma once

#include <memory>
#include <string>

#include <QApplication>
#include <QWidget>

#include "demo/FakeServices.h"
#include "screenshots/Shot.h"
#include "ui/theme/Theme.h"

namespace quillmeter::test {

// The machine of the screenshots.
const MachineDescription& describedMachine();

// One with nothing (no agents, network, sound or battery), and one where everything is at its limit or fails.
MachineDescription bareMachine();
MachineDescription troubledMachine();
std::vector<Shot> allShots();

// A desktop without motion, the program's theme and services on the described machine.
class Desk {
 public:
  explicit Desk(const std::string& language = "zh-Hans", const MachineDescription& machine = describedMachine());

  // Shows the window of a shot and brings it into the shot's state.
  std::unique_ptr<QWidget> open(const Shot& shot);
  // Lets events and deferred deletions happen.
  void settle();

  // Settings, sound, record and the check for updates fail from now on.
  void bringTrouble();

  FakeServices services;
  FakeDesktopAppearance appearance;

 private:
  std::unique_ptr<Theme> theme_;
};

}  // namespace quillmeter::test
