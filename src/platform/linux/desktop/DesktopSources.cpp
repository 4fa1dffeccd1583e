#include "platform/linux/desktop/DesktopSources.h"

#include <utility>

namespace quillmeter {

void FirstForegroundApplication::add(std::unique_ptr<ForegroundApplicationSource> candidate) {
  ForegroundApplicationSource* source = candidate.get();
  source->setActivationHandler([this, source](const RunningApplication& application) {
    if (handler_ && current() == source) handler_(application);
  });
  candidates_.push_back(std::move(candidate));
}

ForegroundApplicationSource* FirstForegroundApplication::current() const {
  for (const auto& candidate : candidates_) {
    if (candidate->isSupported()) return candidate.get();
  }
  return nullptr;
}

std::optional<RunningApplication> FirstForegroundApplication::frontmost() {
  ForegroundApplicationSource* source = current();
  return source != nullptr ? source->frontmost() : std::nullopt;
}

std::optional<double> FirstInputIdle::idleSeconds() {
  for (const auto& candidate : candidates_) {
    if (const auto seconds = candidate->idleSeconds()) return seconds;
  }
  return std::nullopt;
}

void DesktopScreenLock::add(std::unique_ptr<ScreenSaverLock> candidate) {
  const ScreenSaverLock* source = candidate.get();
  candidate->setHandler([this, source](bool locked) {
    if (current() == source) announce(locked);
  });
  candidates_.push_back(std::move(candidate));
}

const ScreenSaverLock* DesktopScreenLock::current() const {
  for (const auto& candidate : candidates_) {
    if (candidate->isActive()) return candidate.get();
  }
  return nullptr;
}

std::optional<bool> DesktopScreenLock::registryLocked() {
  return session_ != nullptr ? session_->isLocked() : std::nullopt;
}

// A locker of a session that is not in front says nothing of what the user sees.
std::optional<bool> DesktopScreenLock::sessionLocked() {
  if (session_ != nullptr && session_->isActive() == false) return std::nullopt;
  const ScreenSaverLock* locker = current();
  return locker != nullptr ? locker->isActive() : std::nullopt;
}

void DesktopScreenLock::announce(bool locked) const {
  if (handler_) handler_(locked);
}

void DesktopSessionEvents::setEventHandler(std::function<void(SessionEvent)> handler) {
  handler_ = std::move(handler);
  if (displays_ != nullptr && displays_->areAsleep()) announce(SessionEvent::displaysDidSleep);
  if (session_ != nullptr && session_->isActive() == false) announce(SessionEvent::sessionDidResignActive);
}

void DesktopSessionEvents::announce(SessionEvent event) const {
  if (handler_) handler_(event);
}

}  // namespace quillmeter
