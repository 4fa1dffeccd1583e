#include "platform/fake/ManualTimerFactory.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmeter {
namespace {

TEST(ManualTimerFactory, firesInOrderOfTimeAndMovesTheClocksAlong) {
  ManualClock clock(Date::fromWholeSeconds(100));
  ManualMonotonicClock monotonic(7);
  ManualTimerFactory timers(&clock, &monotonic);
  std::string log;
  const auto note = [&](const char* name) {
    return [&log, &clock, name] { log += name + std::to_string(clock.now().microseconds / 100'000) + " "; };
  };
  const auto every2 = timers.repeating(2, 0.5, note("a"));
  const auto every3 = timers.repeating(3, 0, note("b"));
  const auto once = timers.once(3, note("c"));
  timers.advance(1.9);
  EXPECT_EQ(log, "");
  timers.advance(4.2);
  EXPECT_EQ(log, "a1020 b1030 c1030 a1040 a1060 b1060 ");
  EXPECT_DOUBLE_EQ(monotonic.uptime(), 13.1);
  EXPECT_EQ(timers.running(), (std::vector<ManualTimerFactory::Running>{{2, 0.5, true}, {3, 0, true}}));
}

TEST(ManualTimerFactory, callsMayStartAndEndTimers) {
  ManualTimerFactory timers;
  std::string log;
  std::unique_ptr<Timer> first, second;
  first = timers.repeating(1, 0, [&] {
    log += "first ";
    second = timers.once(1, [&] { log += "second "; });
    first.reset();
  });
  timers.advance(10);
  EXPECT_EQ(log, "first second ");
  EXPECT_TRUE(timers.running().empty());
}

}  // namespace
}  // namespace quillmeter
