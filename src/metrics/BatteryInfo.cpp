#include "metrics/BatteryInfo.h"

#include <string_view>

#include "base/CheckedInt.h"

namespace quillmeter {
namespace {

// The value of a key when it is there and of the expected type.
template <typename Value>
std::optional<Value> valueOf(const PowerSourceDescription& description, std::string_view key) {
  const auto found = description.find(key);
  if (found == description.end()) return std::nullopt;
  const auto* value = std::get_if<Value>(&found->second);
  return value != nullptr ? std::optional<Value>(*value) : std::nullopt;
}

}  // namespace

bool BatteryInfo::batteryPresent() {
  if (internalChecked_) return hasInternalBattery_;
  const auto sources = sources_.list();
  if (!sources) fatalError("the system lists no power sources");
  hasInternalBattery_ = !sources->empty();
  internalChecked_ = true;
  return hasInternalBattery_;
}

std::optional<Battery> BatteryInfo::getInternalBattery([[maybe_unused]] bool includeRegistry) {
  const auto sources = sources_.list();
  if (!sources || sources->empty()) return std::nullopt;
  const PowerSourceDescription& description = sources->front();
  Battery battery;
  battery.name = valueOf<std::string>(description, "Name");
  battery.timeToEmpty = valueOf<std::int64_t>(description, "Time to Empty");
  battery.timeToFull = valueOf<std::int64_t>(description, "Time to Full Charge");
  battery.currentCapacity = valueOf<std::int64_t>(description, "Current Capacity");
  battery.maxCapacity = valueOf<std::int64_t>(description, "Max Capacity");
  battery.isCharging = valueOf<bool>(description, "Is Charging");
  battery.isCharged = valueOf<bool>(description, "Is Charged");
  battery.acPowered = valueOf<std::string>(description, "Power Source State") == "AC Power";
  return battery;
}

}  // namespace quillmeter
