#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Date.h"

namespace quillmeter {

// The figures that a widget in another process shows. A changed record gets a new key, never a migration.
struct WidgetSharedSnapshot {
  double cpuUsage = 0;  // fractions 0 ... 1
  double memoryUsage = 0;
  double diskUsage = 0;
  std::optional<double> batteryLevel;
  std::int64_t todayTokens = 0;
  std::int64_t weekTokens = 0;
  std::optional<double> primaryLimitUsed;
  std::optional<double> weeklyLimitUsed;
  Date updatedAt;

  friend bool operator==(const WidgetSharedSnapshot&, const WidgetSharedSnapshot&) = default;
};

// A JSON object with one key a field; absent values are left out, the date is seconds since 2001-01-01 00:00:00 UTC.
// Absent when a figure is not finite: JSON has no such number.
std::optional<std::string> encodeWidgetSharedSnapshot(const WidgetSharedSnapshot& snapshot);

}  // namespace quillmeter
