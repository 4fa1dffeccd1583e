#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/TimerFactory.h"
#include "platform/fake/ManualClock.h"

namespace quillmeter {

// Timers that fire when the test lets time pass. Clocks that are given move along, so that each firing sees its own
// time.
class ManualTimerFactory final : public TimerFactory {
 public:
  explicit ManualTimerFactory(ManualClock* clock = nullptr, ManualMonotonicClock* monotonic = nullptr);
  ~ManualTimerFactory() override;

  std::unique_ptr<Timer> repeating(double interval, double tolerance, std::function<void()> fire) override;
  std::unique_ptr<Timer> once(double delay, std::function<void()> fire) override;

  // Lets `seconds` pass: fires what is due in order of time (equal times: in order of creation), also what is started
  // meanwhile.
  void advance(double seconds);

  // What is running now.
  struct Running {
    double interval = 0;  // of a one-shot timer: its delay
    double tolerance = 0;
    bool repeats = false;
    friend bool operator==(const Running&, const Running&) = default;
  };
  std::vector<Running> running() const;

 private:
  struct Entry;
  class ManualTimer;
  std::unique_ptr<Timer> add(Running timer, std::function<void()> fire);
  void moveTo(double time);

  std::vector<std::shared_ptr<Entry>> entries_;
  ManualClock* clock_;
  ManualMonotonicClock* monotonic_;
  double now_ = 0;  // seconds since the factory was made
};

}  // namespace quillmeter
