#pragma once

#include <functional>
#include <memory>

namespace quillmeter {

// A running timer; destroying it ends it (also from within its own call).
class Timer {
 public:
  virtual ~Timer() = default;
};

// Timers on the main thread. Calls never overlap; firings that were missed (a busy thread, a sleeping machine) are not
// made up for.
class TimerFactory {
 public:
  virtual ~TimerFactory() = default;
  // Fires every `interval` seconds, first after one interval. Each firing may come up to `tolerance` seconds late, so
  // that the system can wake up once for several timers.
  [[nodiscard]] virtual std::unique_ptr<Timer> repeating(double interval, double tolerance,
                                                         std::function<void()> fire) = 0;
  // Fires once after `delay` seconds (0 or less: on the next turn of the event loop).
  [[nodiscard]] virtual std::unique_ptr<Timer> once(double delay, std::function<void()> fire) = 0;
};

}  // namespace quillmeter
