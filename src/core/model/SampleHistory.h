#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "core/model/UnitInterval.h"

namespace quillmeter {

// The newest 24 values of a sparkline, oldest first, each 0 ... 1; at first all 0.
class SampleHistory {
 public:
  static constexpr std::size_t capacity = 24;

  void append(double value) {
    std::shift_left(values_.begin(), values_.end(), 1);
    values_.back() = clampToUnit(value);
  }
  std::span<const double, capacity> values() const { return values_; }

  friend bool operator==(const SampleHistory&, const SampleHistory&) = default;

 private:
  std::array<double, capacity> values_{};
};

}  // namespace quillmeter
