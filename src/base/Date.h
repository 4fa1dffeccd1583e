#pragma once

#include <compare>
#include <cstdint>
#include <limits>

namespace quillmeter {

// An instant, in whole microseconds since 1970-01-01 00:00:00 UTC (leap seconds not counted, as POSIX).
// Finer than any log writes; exact to compare, add and store, which a floating second is not.
struct Date {
  std::int64_t microseconds = 0;

  static constexpr std::int64_t microsecondsPerSecond = 1'000'000;

  // The marker "never": 0001-01-01 00:00:00 UTC. Also the least instant that fromSeconds gives.
  static constexpr Date distantPast() { return Date{-62'135'596'800 * microsecondsPerSecond}; }
  // 9999-12-31 23:59:59.999999 UTC, the greatest instant that fromSeconds gives.
  static constexpr Date distantFuture() { return Date{253'402'300'800 * microsecondsPerSecond - 1}; }

  // Seconds since 1970, rounded to the nearest microsecond and held within distantPast ... distantFuture. NaN gives
  // distantPast.
  static Date fromSeconds(double seconds);
  static constexpr Date fromWholeSeconds(std::int64_t seconds) {
    if (seconds <= distantPast().microseconds / microsecondsPerSecond) return distantPast();
    if (seconds > distantFuture().microseconds / microsecondsPerSecond) return distantFuture();
    return Date{seconds * microsecondsPerSecond};
  }

  // Seconds since 1970.
  constexpr double seconds() const { return static_cast<double>(microseconds) / microsecondsPerSecond; }
  // Seconds from `other` to this instant; negative when this one is earlier.
  constexpr double secondsSince(Date other) const {
    return static_cast<double>(microseconds - other.microseconds) / microsecondsPerSecond;
  }

  friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace quillmeter
