#include "metrics/Battery.h"

namespace quillmeter {
namespace {

std::string twoDigits(std::int64_t value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::optional<double> Battery::charge() const {
  if (!currentCapacity || !maxCapacity) return std::nullopt;
  return static_cast<double>(*currentCapacity) / static_cast<double>(*maxCapacity) * 100;
}

std::optional<std::int64_t> Battery::timeRemaining() const {
  if (!isCharging) return std::nullopt;
  return *isCharging ? timeToFull : timeToEmpty;
}

std::string Battery::timeLeft() const {
  const auto minutes = timeRemaining();
  if (!minutes || *minutes < 1) return "-";
  return twoDigits(*minutes / 60) + ":" + twoDigits(*minutes % 60);
}

std::optional<double> Battery::health() const {
  if (!registryFullChargeCapacity || !designCapacity || *designCapacity <= 0) return std::nullopt;
  return static_cast<double>(*registryFullChargeCapacity) / static_cast<double>(*designCapacity) * 100;
}

}  // namespace quillmeter
