#pragma once

#include <functional>

namespace quillmeter {

enum class SessionEvent {
  willSleep,
  didWake,
  displaysDidSleep,
  displaysDidWake,
  sessionDidResignActive,  // another session of the same seat came to the front
  sessionDidBecomeActive,
};

// What happens to the machine and the user's session as a whole. Main thread.
class SessionEvents {
 public:
  virtual ~SessionEvents() = default;
  // Called at each change. A state that already holds when the handler is set (displays off, session inactive) is told
  // as its event, then or later. One handler; an empty one ends it. The machine does not fall asleep before a willSleep
  // call returns, where the system grants that.
  virtual void setEventHandler(std::function<void(SessionEvent)> handler) = 0;
};

}  // namespace quillmeter
