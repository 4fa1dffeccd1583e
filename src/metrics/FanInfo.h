#pragma once

#include <cstdint>
#include <optional>

namespace quillmeter {

// Fan speed and a sensor temperature. No sensor is read, so both stay absent; a reading would be added in update().
class FanInfo {
 public:
  void update();

  std::optional<std::int64_t> rpm() const { return rpm_; }
  std::optional<double> temperature() const { return temperature_; }  // °C

 private:
  std::optional<std::int64_t> rpm_;
  std::optional<double> temperature_;
};

}  // namespace quillmeter
