#include "screentime/model/ScreenLockTracker.h"

namespace quillmeter {

void ScreenLockTracker::notify(bool locked) {
  notifiedLocked_ = locked;
  confirmedLock_ = false;
}

std::optional<bool> ScreenLockTracker::resolve(std::optional<bool> registryLocked, std::optional<bool> sessionLocked) {
  if (registryLocked.value_or(false) || sessionLocked.value_or(false)) {
    confirmedLock_ = true;
    return true;
  }
  if (!registryLocked && !sessionLocked) return notifiedLocked_;
  return confirmedLock_ ? false : notifiedLocked_.value_or(false);
}

}  // namespace quillmeter
