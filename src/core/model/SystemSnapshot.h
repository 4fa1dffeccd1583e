#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Date.h"
#include "base/L10n.h"

namespace quillmeter {

// One complete sample of the machine, as the presentation shows it: fractions 0 ... 1, texts already formatted and
// localised. "—" stands for unknown. A sample starts as a copy of the one before it, so that what is not read again
// keeps its value.
struct SystemSnapshot {
  double cpuUsage = 0;
  std::string cpuUser = QM_TR("正在采样");
  std::string cpuSystem = QM_TR("正在采样");
  double memoryUsage = 0;
  std::string memoryApp = "—";
  std::string memoryWired = "—";
  std::string memoryCompressed = "—";
  double diskUsage = 0;
  std::string diskUsed = "—";
  std::string diskFree = "—";
  std::string diskTotal = "—";
  std::optional<double> batteryLevel;  // absent without a battery
  std::string batteryTime = "—";
  std::string batteryCycles = "—";
  std::string batteryTemperature = "—";
  std::string batteryState = "—";
  bool batteryIsCharging = false;
  bool batteryACPowered = false;
  std::optional<std::int64_t> batteryFullChargeCapacity;  // mAh
  std::optional<std::int64_t> batteryDesignCapacity;      // mAh
  std::optional<double> batteryHealth;                    // percent
  std::string uploadSpeed = QM_TR("正在采样");
  std::string downloadSpeed = QM_TR("正在采样");
  std::string networkIP = "—";
  double uploadBytesPerSecond = 0;
  double downloadBytesPerSecond = 0;
  std::optional<std::int64_t> fanRPM;
  std::string thermalState = QM_TR("正常");
  std::optional<double> sensorTemperature;  // °C
  Date updatedAt;                           // when the sample was taken; who creates the record sets it

  friend bool operator==(const SystemSnapshot&, const SystemSnapshot&) = default;
};

}  // namespace quillmeter
