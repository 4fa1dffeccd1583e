#include "metrics/CpuInfo.h"

#include <gtest/gtest.h>

#include "platform/fake/FakeMachine.h"

namespace quillmeter {
namespace {

struct CpuInfoTest : testing::Test {
  // One update after the totals became these.
  void update(ProcessorTickCounts totals) {
    ticks.processors = {totals};
    cpu.update();
  }
  void expect(double usage, const char* user, const char* system, const char* idle) {
    EXPECT_EQ(cpu.percentage(), usage);
    EXPECT_EQ(cpu.user(), user);
    EXPECT_EQ(cpu.system(), system);
    EXPECT_EQ(cpu.idle(), idle);
  }
  FakeProcessorTicks ticks;
  CpuInfo cpu{ticks, {}};
};

TEST_F(CpuInfoTest, theFirstUpdateShowsIdleAndTheSecondTheShares) {
  EXPECT_EQ(cpu.user(), "");
  update({.user = 1'000, .system = 500, .idle = 9'000, .nice = 7});
  expect(0, "0.00 %", "0.00 %", "100.00 %");
  update({.user = 1'030, .system = 510, .idle = 9'060, .nice = 7});
  expect(40, "30.00 %", "10.00 %", "60.00 %");
}

TEST_F(CpuInfoTest, niceTimeCountsAsUserTime) {
  update({});
  update({.user = 5, .system = 0, .idle = 90, .nice = 5});
  expect(10, "10.00 %", "0.00 %", "90.00 %");
}

TEST_F(CpuInfoTest, sharesAreRoundedToTwoDigitsAndFullIsExactlyFull) {
  update({});
  update({.user = 1, .system = 1, .idle = 1, .nice = 0});
  expect(66.67, "33.33 %", "33.33 %", "33.33 %");
  update({.user = 101, .system = 1, .idle = 1, .nice = 0});
  expect(100, "100.00 %", "0.00 %", "0.00 %");
}

TEST_F(CpuInfoTest, whatTeachesNothingShowsTheLastValidFiguresAgain) {
  update({.user = 10, .system = 0, .idle = 0, .nice = 0});
  update({.user = 20, .system = 0, .idle = 30, .nice = 0});
  expect(25, "25.00 %", "0.00 %", "75.00 %");
  update({.user = 20, .system = 0, .idle = 30, .nice = 0});  // no ticks passed
  expect(25, "25.00 %", "0.00 %", "75.00 %");
  ticks.answers = false;
  update({.user = 999, .system = 0, .idle = 30, .nice = 0});
  expect(25, "25.00 %", "0.00 %", "75.00 %");
  ticks.answers = true;
  ticks.processors.clear();
  cpu.update();
  expect(25, "25.00 %", "0.00 %", "75.00 %");
  update({.user = 20, .system = 10, .idle = 40, .nice = 0});  // measured from before the failures
  expect(50, "0.00 %", "50.00 %", "50.00 %");
}

TEST_F(CpuInfoTest, aCounterThatWentBackCountsAsNothing) {
  update({.user = 100, .system = 100, .idle = 1'000, .nice = 0});
  update({.user = 110, .system = 50, .idle = 1'030, .nice = 0});
  expect(25, "25.00 %", "0.00 %", "75.00 %");
  update({.user = 1, .system = 1, .idle = 1, .nice = 0});  // all of them: a reset
  expect(25, "25.00 %", "0.00 %", "75.00 %");
  update({.user = 2, .system = 1, .idle = 2, .nice = 0});  // measured from the reset on
  expect(50, "50.00 %", "0.00 %", "50.00 %");
}

TEST_F(CpuInfoTest, processorsAreSummedUpAndTextsFollowTheLocale) {
  LocaleConventions locale;
  locale.decimalSeparator = ",";
  CpuInfo localized(ticks, locale);
  ticks.processors = {{}, {}};
  localized.update();
  ticks.processors = {{.user = 10, .system = 0, .idle = 90, .nice = 0},
                      {.user = 0, .system = 15, .idle = 85, .nice = 0}};
  localized.update();
  EXPECT_EQ(localized.percentage(), 12.5);
  EXPECT_EQ(localized.system(), "7,50 %");
}

}  // namespace
}  // namespace quillmeter
