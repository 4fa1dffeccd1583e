#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/InputIdle.h"
#include "platform/linux/desktop/DisplayPower.h"
#include "platform/linux/desktop/XcbConnection.h"

namespace quillmeter {

// The X server's own counter of milliseconds since the last input, and in the same round trip whether the displays are
// switched off: the server sends no event for that. Main thread.
class X11InputIdle final : public InputIdleSource, public DisplayPower {
 public:
  X11InputIdle(XcbConnection& connection, TimerFactory& timers);

  std::optional<double> idleSeconds() override;

  void setHandler(std::function<void(bool asleep)> handler) override { handler_ = std::move(handler); }
  bool areAsleep() const override { return asleep_; }

 private:
  void noteDisplays(bool asleep);

  XcbConnection& connection_;
  TimerFactory& timers_;
  bool hasScreenSaver_ = false;
  bool hasDpms_ = false;
  bool asleep_ = false;
  std::function<void(bool asleep)> handler_;
  std::unique_ptr<Timer> announcement_;
};

}  // namespace quillmeter
