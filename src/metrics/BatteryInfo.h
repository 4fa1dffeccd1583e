#pragma once

#include <optional>

#include "metrics/Battery.h"
#include "platform/PowerSources.h"

namespace quillmeter {

// Whether this machine has a battery, and what the first one reports right now. Owned by the executable, main thread.
class BatteryInfo {
 public:
  explicit BatteryInfo(PowerSources& sources) : sources_(sources) {}

  // Tested once and kept for the life of the process. A system without any answer is fatal here.
  bool batteryPresent();
  // Absent without a battery. `includeRegistry` marks the slow reading; nothing more is read for it so far.
  std::optional<Battery> getInternalBattery(bool includeRegistry);

 private:
  PowerSources& sources_;
  bool internalChecked_ = false;
  bool hasInternalBattery_ = false;
};

}  // namespace quillmeter
