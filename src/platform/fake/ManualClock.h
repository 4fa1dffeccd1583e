#pragma once

#include "base/Clock.h"

namespace quillmeter {

// A wall clock that stands still until it is moved.
class ManualClock final : public Clock {
 public:
  explicit ManualClock(Date start = Date::fromWholeSeconds(1'750'000'000)) : now_(start) {}
  Date now() const override { return now_; }
  void set(Date now) { now_ = now; }
  void advance(double seconds) { now_.microseconds += Date::fromSeconds(seconds).microseconds; }

 private:
  Date now_;
};

class ManualMonotonicClock final : public MonotonicClock {
 public:
  explicit ManualMonotonicClock(double start = 1'000) : uptime_(start) {}
  double uptime() const override { return uptime_; }
  void advance(double seconds) { uptime_ += seconds; }

 private:
  double uptime_;
};

}  // namespace quillmeter
