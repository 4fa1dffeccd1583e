#pragma once

#include <functional>
#include <optional>

namespace quillmeter {

// The three witnesses of a locked screen. Main thread. The answers are cached by the source: asking never blocks.
class ScreenLockSources {
 public:
  virtual ~ScreenLockSources() = default;
  // What the session manager has on record; absent when unknown.
  virtual std::optional<bool> registryLocked() = 0;
  // What the running locker says of itself; absent when there is none, or while the session is not in front of the
  // seat.
  virtual std::optional<bool> sessionLocked() = 0;
  // Called with true when a lock is announced and with false for an unlock. It may come before the other two have
  // followed. One handler; an empty one ends it.
  virtual void setLockHandler(std::function<void(bool locked)> handler) = 0;
};

}  // namespace quillmeter
