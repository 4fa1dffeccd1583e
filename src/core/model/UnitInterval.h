#pragma once

#include <cmath>

namespace quillmeter {

// A fraction for a gauge: what is not finite or not above 0 is 0, what is above 1 is 1.
inline double clampToUnit(double value) {
  if (!std::isfinite(value) || value <= 0) return 0;
  return value > 1 ? 1 : value;
}

}  // namespace quillmeter
