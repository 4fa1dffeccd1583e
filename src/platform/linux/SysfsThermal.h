#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/ThermalState.h"
#include "platform/linux/KeptFile.h"

namespace quillmeter {

// The trip points of one thermal zone, the lowest of each kind, in thousandths of °C. What a zone lacks is absent.
struct ThermalTrips {
  std::optional<int> active, passive, hot, critical;
  bool any() const { return active || passive || hot || critical; }
};

// 3 at a hot trip or 5 °C below the critical one; 2 at the passive trip, where the kernel throttles; 1 at an active
// trip, 10 °C below the passive one or, with neither, 20 °C below the critical one; else 0. Temperatures that no sensor
// of a running machine has (outside -40 ... 150 °C) count as 0.
int thermalLevel(const ThermalTrips& trips, int milliCelsius);

// The highest level of all thermal zones below `root`. Zones are listed anew every few minutes; in between only the
// temperatures are read, from files kept open.
class SysfsThermal final : public ThermalState {
 public:
  explicit SysfsThermal(std::filesystem::path root = "/") : folder_(root / "sys/class/thermal") {}
  int level() override;

 private:
  struct Zone {
    KeptFile temperature;
    ThermalTrips trips;
  };
  void listZones();

  std::filesystem::path folder_;
  std::vector<Zone> zones_;
  unsigned readings_ = 0;
};

}  // namespace quillmeter
