#pragma once

#include "base/Clock.h"
#include "platform/Platform.h"

namespace quillmeter {

// Puts the readers of this Linux machine into `platform`. They wait for sockets by `platform.descriptors`, which is set
// before (or left null by a program without an event loop). `clock` outlives the platform. Nothing is opened that is
// not asked for, but for the routing socket.
void addLinuxPlatform(Platform& platform, const MonotonicClock& clock);

}  // namespace quillmeter
