#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Date.h"

namespace quillmeter {

// One reading of the machine's battery; what the source does not say is absent.
struct Battery {
  std::optional<std::string> name;
  std::optional<std::int64_t> timeToFull;   // minutes
  std::optional<std::int64_t> timeToEmpty;  // minutes
  std::optional<std::string> manufacturer;
  std::optional<Date> manufactureDate;
  std::optional<std::int64_t> currentCapacity;  // on the scale of maxCapacity
  std::optional<std::int64_t> maxCapacity;
  std::optional<std::int64_t> designCapacity;              // mAh
  std::optional<std::int64_t> registryFullChargeCapacity;  // mAh
  std::optional<std::int64_t> cycleCount;
  std::optional<std::int64_t> designCycleCount;
  std::optional<bool> acPowered;
  std::optional<bool> isCharging;
  std::optional<bool> isCharged;
  std::optional<std::int64_t> amperage;  // mA
  std::optional<double> voltage;         // V
  std::optional<double> watts;
  std::optional<double> temperature;  // °C

  // Percent; absent unless both capacities are known.
  std::optional<double> charge() const;
  // Minutes to full while charging, else to empty; absent when it is not known whether it charges.
  std::optional<std::int64_t> timeRemaining() const;
  // timeRemaining as "01:35"; "-" when unknown or below a minute.
  std::string timeLeft() const;
  // Percent of the design capacity that a full charge still holds.
  std::optional<double> health() const;

  friend bool operator==(const Battery&, const Battery&) = default;
};

}  // namespace quillmeter
