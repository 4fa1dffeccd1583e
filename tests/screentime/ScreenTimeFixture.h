#pragma once

#include <string>

#include "demo/MemoryArchiveStore.h"
#include "platform/fake/FakeScreenTime.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ManualTimerFactory.h"
#include "screentime/ScreenTimeMonitor.h"

namespace quillmeter::test {

inline RunningApplication application(const std::string& id) {
  return {id, "Name of " + id, 100, {}};
}
inline ActivityApp app(const std::string& id) {
  return {id, "Name of " + id};
}

// A scripted desktop around one monitor. The monitor is made last, so that a test can prepare the stored archive.
struct ScreenTimeFixture {
  explicit ScreenTimeFixture(Date start = Date::fromWholeSeconds(1'750'000'000)) : clock(start) {}

  ScreenTimeDependencies dependencies() {
    return {clock, monotonic, [this] { return calendar; }, timers, [this] { return sources(); }, store};
  }
  ActivitySources sources() {
    ++askedForSources;
    return {foreground, idle, locks, events};
  }
  // Seconds pass on both clocks while the user works: the idle counter stays where it is. Timers fire.
  void pass(double seconds) { timers.advance(seconds); }

  ManualClock clock;
  ManualMonotonicClock monotonic;
  ManualTimerFactory timers{&clock, &monotonic};
  FakeForegroundApplication foreground;
  FakeInputIdle idle;
  FakeScreenLock locks;
  FakeSessionEvents events;
  MemoryArchiveStore store;
  Calendar calendar = Calendar::utc();
  int askedForSources = 0;
};

}  // namespace quillmeter::test
