#include "platform/linux/UPowerDevice.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace quillmeter {
namespace {

constexpr std::int64_t batteryType = 2;
constexpr std::int64_t charging = 1, discharging = 2, empty = 3, fullyCharged = 4, pendingDischarge = 6;
constexpr std::int64_t capacityScale = 10'000;  // a full charge; keeps two digits of UPower's percentage

template <typename Value>
void take(const BusProperties& properties, std::string_view name, std::optional<Value>& field) {
  const auto found = properties.find(name);
  if (found == properties.end()) return;
  const auto* value = std::get_if<Value>(&found->second);
  field = value != nullptr ? std::optional<Value>(*value) : std::nullopt;
}

std::optional<bool> externalPower(std::optional<bool> onBattery, std::optional<std::int64_t> state) {
  if (onBattery) return !*onBattery;
  if (!state || *state == 0) return std::nullopt;
  return *state != discharging && *state != empty && *state != pendingDischarge;
}

}  // namespace

void UPowerDevice::apply(const BusProperties& properties) {
  take(properties, "Type", type);
  take(properties, "State", state);
  take(properties, "PowerSupply", powerSupply);
  take(properties, "IsPresent", isPresent);
  take(properties, "Percentage", percentage);
  take(properties, "TimeToEmpty", timeToEmpty);
  take(properties, "TimeToFull", timeToFull);
  take(properties, "NativePath", nativePath);
}

bool UPowerDevice::isBatteryOfTheMachine() const {
  return type == batteryType && powerSupply.value_or(false) && isPresent.value_or(true);
}

std::string UPowerDevice::name() const {
  const std::string path = nativePath.value_or("");
  return path.substr(path.rfind('/') + 1);
}

PowerSourceDescription UPowerDevice::describe(std::optional<bool> onBattery) const {
  PowerSourceDescription description{{"Name", name()}};
  if (const auto external = externalPower(onBattery, state)) {
    description["Power Source State"] = std::string(*external ? "AC Power" : "Battery Power");
  }
  if (state && *state != 0) {
    description["Is Charging"] = *state == charging;
    description["Is Charged"] = *state == fullyCharged;
  }
  if (percentage && std::isfinite(*percentage)) {
    description["Current Capacity"] =
        std::int64_t{std::llround(std::clamp(*percentage, 0.0, 100.0) * capacityScale / 100)};
    description["Max Capacity"] = capacityScale;
  }
  if (timeToEmpty && *timeToEmpty > 0) description["Time to Empty"] = *timeToEmpty / 60;
  if (timeToFull && *timeToFull > 0) description["Time to Full Charge"] = *timeToFull / 60;
  return description;
}

}  // namespace quillmeter
