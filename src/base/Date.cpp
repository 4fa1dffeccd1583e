#include "base/Date.h"

#include <algorithm>
#include <cmath>

namespace quillmeter {

Date Date::fromSeconds(double seconds) {
  if (std::isnan(seconds)) return distantPast();
  const double microseconds = std::round(seconds * static_cast<double>(microsecondsPerSecond));
  // Both ends are compared as doubles before the conversion, which is undefined outside the integer's range.
  if (microseconds <= static_cast<double>(distantPast().microseconds)) return distantPast();
  if (microseconds >= static_cast<double>(distantFuture().microseconds)) return distantFuture();
  return Date{static_cast<std::int64_t>(microseconds)};
}

}  // namespace quillmeter
