#pragma once

#include <optional>

namespace quillmeter {

// Decides from three witnesses whether the screen is locked. A notification runs ahead of the other two: a lock that
// was announced holds until they have confirmed it once and then say otherwise. A value, owned by ScreenTimeMonitor.
class ScreenLockTracker {
 public:
  void notify(bool locked);
  // Absent means unknown, in the arguments as in the answer.
  std::optional<bool> resolve(std::optional<bool> registryLocked, std::optional<bool> sessionLocked);

  const std::optional<bool>& notifiedLocked() const { return notifiedLocked_; }
  bool confirmedLock() const { return confirmedLock_; }

 private:
  std::optional<bool> notifiedLocked_;
  bool confirmedLock_ = false;
};

}  // namespace quillmeter
