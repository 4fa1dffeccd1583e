#include "metrics/BatteryInfo.h"

#include <gtest/gtest.h>

#include "platform/fake/FakeMachine.h"

namespace quillmeter {
namespace {

PowerSourceDescription laptopBattery() {
  return {{"Name", "BAT0"},
          {"Time to Empty", std::int64_t{125}},
          {"Time to Full Charge", std::int64_t{0}},
          {"Current Capacity", std::int64_t{45}},
          {"Max Capacity", std::int64_t{60}},
          {"Is Charging", false},
          {"Is Charged", false},
          {"Power Source State", "Battery Power"}};
}

TEST(BatteryInfo, readsTheFirstSourceOnlyAndTheSameWithAndWithoutTheSlowPart) {
  FakePowerSources sources;
  sources.sources = {laptopBattery(), {{"Name", "BAT1"}}};
  BatteryInfo info(sources);
  const auto battery = info.getInternalBattery(true);
  ASSERT_TRUE(battery);
  EXPECT_EQ(battery, info.getInternalBattery(false));
  EXPECT_EQ(battery->name, "BAT0");
  EXPECT_EQ(battery->charge(), 75);
  EXPECT_EQ(battery->timeRemaining(), 125);
  EXPECT_EQ(battery->timeLeft(), "02:05");
  EXPECT_EQ(battery->acPowered, false);
  EXPECT_EQ(battery->cycleCount, std::nullopt);
  EXPECT_EQ(battery->health(), std::nullopt);
}

TEST(BatteryInfo, aKeyThatIsMissingOrOfAnotherTypeLeavesItsFieldAbsent) {
  FakePowerSources sources;
  sources.sources = {{{"Name", std::int64_t{7}},
                      {"Time to Empty", "125"},
                      {"Current Capacity", std::int64_t{45}},
                      {"Max Capacity", true},
                      {"Is Charging", std::int64_t{1}},
                      {"Power Source State", true}}};
  Battery expected;
  expected.currentCapacity = 45;
  expected.acPowered = false;
  BatteryInfo info(sources);
  const auto battery = info.getInternalBattery(true);
  EXPECT_EQ(battery, expected);
  EXPECT_EQ(battery->charge(), std::nullopt);
  EXPECT_EQ(battery->timeLeft(), "-");
}

TEST(BatteryInfo, onlyTheExactTextMeansExternalPower) {
  FakePowerSources sources;
  BatteryInfo info(sources);
  for (const auto& [text, powered] : {std::pair{"AC Power", true}, {"Battery Power", false}, {"ac power", false}}) {
    sources.sources = {{{"Power Source State", text}}};
    EXPECT_EQ(info.getInternalBattery(false)->acPowered, powered) << text;
  }
}

TEST(BatteryInfo, presenceIsTestedOnceAndReadingsAreNot) {
  FakePowerSources sources;
  BatteryInfo info(sources);
  EXPECT_FALSE(info.batteryPresent());
  EXPECT_EQ(info.getInternalBattery(true), std::nullopt);
  sources.sources = {laptopBattery()};
  EXPECT_FALSE(info.batteryPresent());
  EXPECT_TRUE(info.getInternalBattery(true));
  sources.answers = false;
  EXPECT_EQ(info.getInternalBattery(true), std::nullopt);
  EXPECT_EQ(sources.reads, 4);
}

TEST(BatteryInfoDeathTest, aSystemWithoutAnswerIsFatalForThePresenceTest) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  FakePowerSources sources;
  sources.answers = false;
  BatteryInfo info(sources);
  EXPECT_DEATH(info.batteryPresent(), "power sources");
}

TEST(Battery, timeLeftIsHoursAndMinutesOfTheDirectionItGoes) {
  const struct {
    std::optional<bool> charging;
    std::optional<std::int64_t> toFull, toEmpty;
    const char* text;
  } cases[] = {
      {true, 95, 10, "01:35"},     {true, 0, 10, "-"},  {false, 95, 10, "00:10"}, {false, 95, std::nullopt, "-"},
      {std::nullopt, 95, 10, "-"}, {false, 0, -1, "-"}, {false, 0, 1, "00:01"},   {true, 60 * 123 + 4, 0, "123:04"}};
  for (const auto& [charging, toFull, toEmpty, text] : cases) {
    Battery battery;
    battery.isCharging = charging;
    battery.timeToFull = toFull;
    battery.timeToEmpty = toEmpty;
    EXPECT_EQ(battery.timeLeft(), text);
  }
}

}  // namespace
}  // namespace quillmeter
