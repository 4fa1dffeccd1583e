#pragma once

#include <optional>
#include <string>

#include "platform/PowerSources.h"
#include "platform/linux/BusProperties.h"

namespace quillmeter {

// What UPower says of one device (interface org.freedesktop.UPower.Device). A property that is missing or of another
// type than UPower documents is absent.
struct UPowerDevice {
  std::optional<std::int64_t> type;   // 2: battery
  std::optional<std::int64_t> state;  // 1 charging, 2 discharging, 3 empty, 4 full, 5 and 6 waiting to do either
  std::optional<bool> powerSupply;    // powers the machine, not a mouse
  std::optional<bool> isPresent;
  std::optional<double> percentage;         // of a full charge
  std::optional<std::int64_t> timeToEmpty;  // seconds; 0 is unknown
  std::optional<std::int64_t> timeToFull;   // seconds; 0 is unknown
  std::optional<std::string> nativePath;    // "BAT0", or a path that ends in it

  // Takes over the properties that are there; the others keep their values.
  void apply(const BusProperties& properties);
  bool isBatteryOfTheMachine() const;
  // "BAT0".
  std::string name() const;
  // With the keys of PowerSources. `onBattery` is what UPower says of the whole machine.
  PowerSourceDescription describe(std::optional<bool> onBattery) const;
};

}  // namespace quillmeter
