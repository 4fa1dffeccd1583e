#pragma once

#include <algorithm>
#include <optional>

#include "base/Clock.h"

namespace quillmeter {

// Makes a counter out of a desktop that only tells when the user has been away for a second and when input resumed.
// While the user is active the true value lies between 0 and the time since input resumed, but never above the second.
class IdleStopwatch {
 public:
  static constexpr double thresholdSeconds = 1.0;

  explicit IdleStopwatch(const MonotonicClock& clock) : clock_(clock), resumedAt_(clock.uptime()) {}

  void idled() {
    if (!idledAt_) idledAt_ = clock_.uptime();
  }
  void resumed() {
    idledAt_.reset();
    resumedAt_ = clock_.uptime();
  }
  double seconds() const {
    if (idledAt_) return thresholdSeconds + std::max(clock_.uptime() - *idledAt_, 0.0);
    return std::clamp(clock_.uptime() - resumedAt_, 0.0, thresholdSeconds);
  }

 private:
  const MonotonicClock& clock_;
  std::optional<double> idledAt_;
  double resumedAt_;
};

}  // namespace quillmeter
