#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

#include "screentime/model/ActivitySpan.h"

namespace quillmeter {

enum class ActivityStorageError { invalidData };

// The content of the screen-time file: one JSON object with "version", "startedAt" (absent when recording was never
// on), "enabled" and "spans". Dates are seconds since 2001-01-01 00:00:00 UTC with up to six decimals, which keep a
// Date to the microsecond.
struct ActivityArchive {
  static constexpr int currentVersion = 1;
  static constexpr std::size_t maximumBytes = 268'435'456;
  static constexpr std::size_t maximumSpans = 2'000'000;  // 46 a minute around the clock for 30 days

  int version = currentVersion;
  std::optional<Date> startedAt;
  bool enabled = false;
  std::vector<ActivitySpan> spans;

  [[nodiscard]] tl::expected<void, ActivityStorageError> validate() const;
  // Total over any bytes. Spans shorter than a microsecond, which a Date cannot tell apart, are left out.
  [[nodiscard]] static tl::expected<ActivityArchive, ActivityStorageError> decode(std::string_view json);

  friend bool operator==(const ActivityArchive&, const ActivityArchive&) = default;
};

// What is written: an archive whose spans stay where they are.
struct ActivityArchiveView {
  std::optional<Date> startedAt;
  bool enabled = false;
  std::span<const ActivitySpan> spans;

  // invalidData when the result would break the bounds that decode() sets. Bytes that are no UTF-8 become U+FFFD.
  [[nodiscard]] tl::expected<std::string, ActivityStorageError> encode() const;
};

}  // namespace quillmeter
