#include "platform/linux/SysfsThermal.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

TEST(SysfsThermal, theTripsOfAZoneTellItsLevel) {
  const ThermalTrips laptop{.active = 70'000, .passive = 85'000, .hot = 90'000, .critical = 100'000};
  const ThermalTrips throttling{.active = {}, .passive = 85'000, .hot = {}, .critical = 100'000};
  const ThermalTrips fanned{.active = 50'000, .passive = {}, .hot = {}, .critical = 100'000};
  const ThermalTrips desktop{.active = {}, .passive = {}, .hot = {}, .critical = 105'000};
  const struct {
    ThermalTrips trips;
    int temperature;
    int level;
  } cases[] = {
      {laptop, 69'999, 0},     {laptop, 70'000, 1},          {laptop, 84'999, 1},     {laptop, 85'000, 2},
      {laptop, 89'999, 2},     {laptop, 90'000, 3},          {laptop, 150'000, 3},    {laptop, 150'001, 0},
      {throttling, 74'999, 0}, {throttling, 75'000, 1},      {throttling, 85'000, 2}, {throttling, 94'999, 2},
      {throttling, 95'000, 3}, {fanned, 49'999, 0},          {fanned, 94'999, 1},     {fanned, 95'000, 3},
      {desktop, 84'999, 0},    {desktop, 85'000, 1},         {desktop, 99'999, 1},    {desktop, 100'000, 3},
      {desktop, -40'001, 0},   {ThermalTrips{}, 149'000, 0},
  };
  for (const auto& [trips, temperature, level] : cases)
    EXPECT_EQ(thermalLevel(trips, temperature), level) << temperature;
}

struct SysfsThermalTest : testing::Test {
  void zone(int number, const std::string& temperature, std::vector<std::pair<std::string, std::string>> trips,
            const std::string& mode = "enabled\n") {
    const std::filesystem::path folder = "sys/class/thermal/thermal_zone" + std::to_string(number);
    root.write(folder / "mode", mode);
    root.write(folder / "temp", temperature);
    for (std::size_t i = 0; i < trips.size(); ++i) {
      const std::string prefix = "trip_point_" + std::to_string(i);
      root.write(folder / (prefix + "_type"), trips[i].first);
      root.write(folder / (prefix + "_temp"), trips[i].second);
    }
  }
  const test::TemporaryDirectory root;
};

TEST_F(SysfsThermalTest, theHighestLevelOfTheZonesCountsAndTemperaturesAreFollowed) {
  zone(0, "40000\n", {{"critical\n", "100000\n"}, {"passive\n", "80000\n"}});
  zone(1, "71000\n", {{"passive", "80000"}, {"passive", "200000"}, {"passive", "0"}, {"passive", "-274000"}});
  SysfsThermal thermal(root.path());
  EXPECT_EQ(thermal.level(), 1);
  zone(0, "96000\n", {});
  EXPECT_EQ(thermal.level(), 3);
  zone(0, "41000", {});
  zone(1, "79999", {});
  EXPECT_EQ(thermal.level(), 1);
}

TEST_F(SysfsThermalTest, zonesWithoutSenseAreLeftOut) {
  zone(0, "99000\n", {{"passive", "0"}, {"passive", "-274000"}, {"critical", "151000"}});  // no usable trip
  zone(1, "99000\n", {{"passive", "80000"}}, "disabled\n");
  zone(2, "-274000\n", {{"passive", "60000"}});
  zone(3, "n/a\n", {{"passive", "60000"}});
  zone(4, "", {{"passive", "60000"}});
  zone(5, "99000\n", {{"fancy", "60000"}, {"passive", "x"}});
  zone(6, "99999999999\n", {{"passive", "60000"}});
  EXPECT_EQ(SysfsThermal(root.path()).level(), 0);
}

TEST_F(SysfsThermalTest, zonesThatComeLaterAreFoundAndThoseThatGoDoNoHarm) {
  SysfsThermal thermal(root.path());
  EXPECT_EQ(thermal.level(), 0);
  zone(0, "90000\n", {{"passive", "80000"}});
  int level = 0;
  for (int i = 0; i < 128; ++i) level = thermal.level();
  EXPECT_EQ(level, 2);
  std::filesystem::remove_all(root.path() / "sys");
  for (int i = 0; i < 129; ++i) level = thermal.level();
  EXPECT_EQ(level, 0);
}

TEST(SysfsThermalMachines, capturedMachinesAreCool) {
  const std::filesystem::path machines = std::filesystem::path(QUILLMETER_TEST_DATA) / "machines";
  for (const char* machine : {"laptop", "desktop", "container"}) EXPECT_EQ(SysfsThermal(machines / machine).level(), 0);
}

}  // namespace
}  // namespace quillmeter
