#pragma once

#include "base/Date.h"

namespace quillmeter {

// The wall clock. Nobody reads the system's clock directly: who needs the time takes a Clock in its constructor.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual Date now() const = 0;
};

class SystemClock final : public Clock {
 public:
  Date now() const override;
};

// Seconds of a clock that only goes forward. SystemMonotonicClock stands still while the machine sleeps.
class MonotonicClock {
 public:
  virtual ~MonotonicClock() = default;
  virtual double uptime() const = 0;
};

class SystemMonotonicClock final : public MonotonicClock {
 public:
  double uptime() const override;
};

}  // namespace quillmeter
