#pragma once

#include "platform/TimerFactory.h"

namespace quillmeter {

// Timers of the Qt event loop of the calling thread. The tolerance picks how coarse a timer is: below 5 % of the
// interval it is exact to the millisecond, then within 5 %, and from half a second on one of whole seconds fires on
// full seconds, together with every other such timer of the machine.
class QtTimerFactory final : public TimerFactory {
 public:
  std::unique_ptr<Timer> repeating(double interval, double tolerance, std::function<void()> fire) override;
  std::unique_ptr<Timer> once(double delay, std::function<void()> fire) override;
};

}  // namespace quillmeter
