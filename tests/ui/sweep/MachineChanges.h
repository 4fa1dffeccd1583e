#pragma once

#include <random>

#include "demo/FakeServices.h"

namespace quillmeter::test {

// Something that may happen to a machine, its user's settings or its agents while the program runs; whatever comes.
class MachineChanges {
 public:
  MachineChanges(FakeServices& services, std::mt19937& random) : services_(services), random_(random) {}
  void makeOne();

 private:
  void changeLoad();
  void changeBattery();
  void changeNetwork();
  void changeAudio();
  void changeAgents();
  void changeDesktop();
  void changeSetting();
  void answerPicker();

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  bool chance() { return below(2) == 0; }
  double share() { return std::uniform_real_distribution<double>(0, 1)(random_); }

  FakeServices& services_;
  std::mt19937& random_;
};

}  // namespace quillmeter::test
