#pragma once

#include "platform/ForegroundApplication.h"
#include "platform/InputIdle.h"
#include "platform/ScreenLockSources.h"
#include "platform/SessionEvents.h"

namespace quillmeter {

// All that a desktop tells of its use.
struct ActivitySources {
  ForegroundApplicationSource& foreground;
  InputIdleSource& idle;
  ScreenLockSources& locks;
  SessionEvents& events;
};

}  // namespace quillmeter
