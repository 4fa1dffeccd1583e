#pragma once

#include <functional>

#include "platform/linux/desktop/LinuxDesktop.h"
#include "platform/qt/QtDescriptorWatcher.h"
#include "platform/qt/QtTimerFactory.h"

namespace quillmeter::test {

// Runs the main thread's event loop until `condition` holds; false when it does not within the deadline (which is long,
// for loaded machines, and not waited for when things go right).
bool waitUntil(const std::function<bool()>& condition, double deadlineSeconds = 20);

// What a LinuxDesktop needs of its program.
struct Machinery {
  QtDescriptorWatcher descriptors;
  QtTimerFactory timers;
  SystemMonotonicClock monotonic;
};

}  // namespace quillmeter::test
