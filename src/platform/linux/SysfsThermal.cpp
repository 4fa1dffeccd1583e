#include "platform/linux/SysfsThermal.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/linux/TextFields.h"

namespace quillmeter {
namespace {

constexpr unsigned readingsBetweenListings = 128;  // some four minutes
constexpr int mostTrips = 64;
constexpr int coldest = -40'000;  // thousandths of °C
constexpr int hottest = 150'000;

std::string lineOf(const std::filesystem::path& path) {
  std::array<char, 64> buffer;
  std::string_view text = KeptFile(path).read(buffer);
  return std::string(takeLine(text));
}

void keepLowest(std::optional<int>& kept, int temperature) {
  kept = std::min(kept.value_or(temperature), temperature);
}

ThermalTrips readTrips(const std::filesystem::path& zone) {
  ThermalTrips trips;
  for (int i = 0; i < mostTrips; ++i) {
    const std::string prefix = "trip_point_" + std::to_string(i);
    const std::string type = lineOf(zone / (prefix + "_type"));
    if (type.empty()) break;
    const auto temperature = numberFrom<int>(lineOf(zone / (prefix + "_temp")));
    if (!temperature || *temperature <= 0 || *temperature > hottest) continue;  // 0 and below: a trip that is off
    if (type == "active") keepLowest(trips.active, *temperature);
    if (type == "passive") keepLowest(trips.passive, *temperature);
    if (type == "hot") keepLowest(trips.hot, *temperature);
    if (type == "critical") keepLowest(trips.critical, *temperature);
  }
  return trips;
}

}  // namespace

int thermalLevel(const ThermalTrips& trips, int milliCelsius) {
  if (milliCelsius < coldest || milliCelsius > hottest) return 0;
  const auto reaches = [milliCelsius](std::optional<int> trip, int margin) {
    return trip && milliCelsius >= *trip - margin;
  };
  if (reaches(trips.hot, 0) || reaches(trips.critical, 5'000)) return 3;
  if (reaches(trips.passive, 0)) return 2;
  if (reaches(trips.active, 0) || reaches(trips.passive, 10'000)) return 1;
  const bool onlyCritical = !trips.active && !trips.passive;
  return onlyCritical && reaches(trips.critical, 20'000) ? 1 : 0;
}

int SysfsThermal::level() {
  if (readings_++ % readingsBetweenListings == 0) listZones();
  int highest = 0;
  for (auto& zone : zones_) {
    std::array<char, 32> buffer;
    std::string_view text = zone.temperature.read(buffer);
    const auto temperature = numberFrom<int>(takeLine(text));
    if (temperature) highest = std::max(highest, thermalLevel(zone.trips, *temperature));
  }
  return highest;
}

void SysfsThermal::listZones() {
  zones_.clear();
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error)) {
    const std::filesystem::path& path = entry->path();
    if (!path.filename().native().starts_with("thermal_zone")) continue;
    if (lineOf(path / "mode") == "disabled") continue;
    if (const ThermalTrips trips = readTrips(path); trips.any()) zones_.push_back({KeptFile(path / "temp"), trips});
  }
}

}  // namespace quillmeter
