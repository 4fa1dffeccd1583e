#include "platform/linux/SysfsPowerSupply.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/fake/ManualClock.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

const std::filesystem::path machines = std::filesystem::path(QUILLMETER_TEST_DATA) / "machines";

using Number = std::int64_t;

std::vector<PowerSourceDescription> list(const std::filesystem::path& root) {
  const ManualMonotonicClock clock;
  return SysfsPowerSupply(root, clock).list();
}

TEST(SysfsPowerSupply, describesALaptopsBatteryAgainstItsFullChargeAndLeavesOutTheMouse) {
  EXPECT_EQ(list(machines / "laptop"), (std::vector<PowerSourceDescription>{{{"Name", "BAT0"},
                                                                             {"Power Source State", "Battery Power"},
                                                                             {"Is Charging", false},
                                                                             {"Is Charged", false},
                                                                             {"Current Capacity", Number{27'000'000}},
                                                                             {"Max Capacity", Number{45'000'000}},
                                                                             {"Time to Empty", Number{108}}}}));
}

TEST(SysfsPowerSupply, listsTwoBatteriesByNameOnThePowerOfAUsbPort) {
  const auto sources = list(machines / "two-batteries");
  ASSERT_EQ(sources.size(), 2u);
  EXPECT_EQ(sources[0], (PowerSourceDescription{{"Name", "BAT0"},
                                                {"Power Source State", "AC Power"},
                                                {"Is Charging", false},
                                                {"Is Charged", false},
                                                {"Current Capacity", Number{23'480'000}},  // never above full
                                                {"Max Capacity", Number{23'480'000}}}));
  EXPECT_EQ(sources[1].at("Name"), PowerSourceValue("BAT1"));
  EXPECT_EQ(sources[1].at("Time to Empty"), PowerSourceValue(Number{108}));  // its current is negative
}

TEST(SysfsPowerSupply, aMachineWithoutBatteryOrWithoutTheFolderHasNone) {
  EXPECT_TRUE(list(machines / "desktop").empty());
  EXPECT_TRUE(list(machines / "container").empty());
}

TEST(SysfsPowerSupply, timesNeedARateAndADirection) {
  const struct {
    const char* properties;
    const char* key;
    std::optional<Number> minutes;
  } cases[] = {
      {"STATUS=Charging ENERGY_NOW=10 ENERGY_FULL=40 POWER_NOW=20", "Time to Full Charge", 90},
      {"STATUS=Charging ENERGY_NOW=10 ENERGY_FULL=40 POWER_NOW=20", "Time to Empty", std::nullopt},
      {"STATUS=Full ENERGY_NOW=40 ENERGY_FULL=40 POWER_NOW=20", "Time to Empty", std::nullopt},
      {"STATUS=Discharging ENERGY_NOW=30 ENERGY_FULL=40 POWER_NOW=0", "Time to Empty", std::nullopt},
      {"STATUS=Discharging ENERGY_NOW=30 ENERGY_FULL=40", "Time to Empty", std::nullopt},
      {"STATUS=Discharging ENERGY_NOW=50000000 ENERGY_FULL=50000000 POWER_NOW=1", "Time to Empty", std::nullopt},
      {"STATUS=Discharging ENERGY_NOW=30000000 ENERGY_FULL=40000000 CURRENT_NOW=1000000 VOLTAGE_NOW=12000000",
       "Time to Empty", 150},
      {"STATUS=Discharging CHARGE_NOW=2000000 CHARGE_FULL=4000000 POWER_NOW=12000000 VOLTAGE_NOW=12000000",
       "Time to Empty", 120},
      {"STATUS=Discharging CHARGE_NOW=2000000 CHARGE_FULL=4000000 CURRENT_NOW=-9223372036854775808", "Time to Empty",
       std::nullopt},
      {"STATUS=Discharging CAPACITY=50 POWER_NOW=12000000", "Time to Empty", std::nullopt},
  };
  for (const auto& [properties, key, minutes] : cases) {
    std::string text = "POWER_SUPPLY_" + std::string(properties);
    for (std::size_t at = 0; (at = text.find(' ', at)) != std::string::npos;) text.replace(at, 1, "\nPOWER_SUPPLY_");
    const auto description = describeBattery(parsePowerSupply(text), std::nullopt);
    const auto found = description.find(key);
    ASSERT_EQ(found != description.end(), minutes.has_value()) << properties;
    if (!minutes) continue;
    EXPECT_EQ(found->second, PowerSourceValue(*minutes)) << properties;
  }
}

TEST(SysfsPowerSupply, unknownsStayOut) {
  EXPECT_EQ(describeBattery(parsePowerSupply("POWER_SUPPLY_NAME=BAT0\nPOWER_SUPPLY_STATUS=Unknown\n"), std::nullopt),
            (PowerSourceDescription{{"Name", "BAT0"}}));
  EXPECT_EQ(
      describeBattery(parsePowerSupply("POWER_SUPPLY_CAPACITY=107\nPOWER_SUPPLY_ENERGY_NOW=5\nCAPACITY=3\n=\n"), true),
      (PowerSourceDescription{{"Name", ""},
                              {"Power Source State", "AC Power"},
                              {"Current Capacity", Number{100}},
                              {"Max Capacity", Number{100}}}));
}

TEST(SysfsPowerSupply, externalPowerIsWhatThePlugSaysElseWhatTheBatteryDoes) {
  const auto battery = [](const std::string& status) { return parsePowerSupply("POWER_SUPPLY_STATUS=" + status); };
  const PowerSupplyFacts plugged = parsePowerSupply("POWER_SUPPLY_ONLINE=1");
  const PowerSupplyFacts unplugged = parsePowerSupply("POWER_SUPPLY_ONLINE=0");
  const struct {
    std::vector<PowerSupplyFacts> mains;
    const char* status;
    std::optional<bool> expected;
  } cases[] = {{{plugged}, "Discharging", true}, {{unplugged, plugged}, "Full", true}, {{unplugged}, "Full", false},
               {{unplugged}, "Charging", true},  {{}, "Discharging", false},           {{}, "Full", true},
               {{}, "Not charging", true},       {{}, "Unknown", std::nullopt},        {{}, "", std::nullopt}};
  for (const auto& [mains, status, expected] : cases) EXPECT_EQ(onExternalPower(mains, battery(status)), expected);
}

TEST(SysfsPowerSupply, readsAgainAfterFiveSecondsAndSeesNewBatteriesWithinAMinute) {
  const test::TemporaryDirectory root;
  const std::filesystem::path folder = "sys/class/power_supply";
  root.write(folder / "BAT0/type", "Battery\n");
  root.write(folder / "BAT0/uevent", "POWER_SUPPLY_CAPACITY=50\n");
  ManualMonotonicClock clock;
  SysfsPowerSupply supply(root.path(), clock);
  ASSERT_EQ(supply.list().size(), 1u);
  EXPECT_EQ(supply.list()[0].at("Name"), PowerSourceValue("BAT0"));  // from its folder

  root.write(folder / "BAT0/uevent", "POWER_SUPPLY_CAPACITY=49\n");
  root.write(folder / "BAT1/type", "Battery\n");
  root.write(folder / "BAT1/uevent", "POWER_SUPPLY_CAPACITY=10\n");
  EXPECT_EQ(supply.list()[0].at("Current Capacity"), PowerSourceValue(Number{50}));
  clock.advance(5);
  EXPECT_EQ(supply.list()[0].at("Current Capacity"), PowerSourceValue(Number{49}));
  EXPECT_EQ(supply.list().size(), 1u);
  clock.advance(55);
  EXPECT_EQ(supply.list().size(), 2u);

  root.write(folder / "BAT0/uevent", "POWER_SUPPLY_PRESENT=0\n");  // taken out of its bay
  clock.advance(5);
  EXPECT_EQ(supply.list().size(), 1u);
  std::filesystem::remove_all(root.path() / folder);
  clock.advance(60);
  EXPECT_TRUE(supply.list().empty());
}

}  // namespace
}  // namespace quillmeter
