#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Clock.h"
#include "platform/PowerSources.h"
#include "platform/linux/KeptFile.h"

namespace quillmeter {

// What the kernel says of one power supply, from the text of its uevent file (KEY=VALUE lines, micro units).
struct PowerSupplyFacts {
  std::string name;    // "BAT0"
  std::string status;  // "Charging", "Discharging", "Not charging", "Full", "Unknown"; empty when it does not say
  bool present = true;
  bool online = false;
  // Content now and when full, and the rate it changes at: all in µWh and µW, or all in µAh and µA.
  std::optional<std::int64_t> contentNow, contentFull, ratePerHour;
  std::optional<std::int64_t> percent;  // of a full charge
};

PowerSupplyFacts parsePowerSupply(std::string_view text);

// Whether the machine runs on external power: absent when nothing tells.
std::optional<bool> onExternalPower(const std::vector<PowerSupplyFacts>& mains, const PowerSupplyFacts& battery);

// The battery with the keys of PowerSources. Capacities are against a full charge, not against the design.
PowerSourceDescription describeBattery(const PowerSupplyFacts& battery, std::optional<bool> externalPower);

// The machine's batteries from /sys/class/power_supply below `root`, by name. Read again at most every five seconds:
// firmware may take milliseconds for an answer. Supplies come and go within a minute.
class SysfsPowerSupply {
 public:
  SysfsPowerSupply(std::filesystem::path root, const MonotonicClock& clock);
  const std::vector<PowerSourceDescription>& list();

 private:
  void listSupplies();
  void readSupplies();

  std::filesystem::path folder_;
  const MonotonicClock& clock_;
  std::vector<KeptFile> batteries_, mains_;
  std::vector<PowerSourceDescription> descriptions_;
  std::optional<double> listedAt_, readAt_;  // uptime in seconds
};

}  // namespace quillmeter
