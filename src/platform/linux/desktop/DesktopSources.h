#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/ForegroundApplication.h"
#include "platform/InputIdle.h"
#include "platform/ScreenLockSources.h"
#include "platform/SessionEvents.h"
#include "platform/linux/desktop/DisplayPower.h"
#include "platform/linux/desktop/LogindSession.h"
#include "platform/linux/desktop/ScreenSaverLock.h"

namespace quillmeter {

// The first of several sources that this desktop supports, asked anew each time. Main thread, as all of these.
class FirstForegroundApplication final : public ForegroundApplicationSource {
 public:
  void add(std::unique_ptr<ForegroundApplicationSource> candidate);
  bool isSupported() const override { return current() != nullptr; }
  std::optional<RunningApplication> frontmost() override;
  void setActivationHandler(std::function<void(const RunningApplication&)> handler) override {
    handler_ = std::move(handler);
  }

 private:
  ForegroundApplicationSource* current() const;

  std::vector<std::unique_ptr<ForegroundApplicationSource>> candidates_;
  std::function<void(const RunningApplication&)> handler_;
};

class FirstInputIdle final : public InputIdleSource {
 public:
  void add(std::unique_ptr<InputIdleSource> candidate) { candidates_.push_back(std::move(candidate)); }
  std::optional<double> idleSeconds() override;

 private:
  std::vector<std::unique_ptr<InputIdleSource>> candidates_;
};

// The lock as the login manager has it on record and as the first screen locker that can tell says it.
class DesktopScreenLock final : public ScreenLockSources {
 public:
  // `session` may be null.
  explicit DesktopScreenLock(const LogindSession* session) : session_(session) {}
  void add(std::unique_ptr<ScreenSaverLock> candidate);
  std::optional<bool> registryLocked() override;
  std::optional<bool> sessionLocked() override;
  void setLockHandler(std::function<void(bool locked)> handler) override { handler_ = std::move(handler); }
  void announce(bool locked) const;

 private:
  const ScreenSaverLock* current() const;

  const LogindSession* session_;
  std::vector<std::unique_ptr<ScreenSaverLock>> candidates_;
  std::function<void(bool locked)> handler_;
};

// Collects what happens to the session and the machine.
class DesktopSessionEvents final : public SessionEvents {
 public:
  // Both may be null.
  DesktopSessionEvents(const LogindSession* session, const DisplayPower* displays)
      : session_(session), displays_(displays) {}
  void setEventHandler(std::function<void(SessionEvent)> handler) override;
  void announce(SessionEvent event) const;

 private:
  const LogindSession* session_;
  const DisplayPower* displays_;
  std::function<void(SessionEvent)> handler_;
};

}  // namespace quillmeter
