#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "platform/ForegroundApplication.h"
#include "platform/InputIdle.h"
#include "platform/ScreenLockSources.h"
#include "platform/SessionEvents.h"

namespace quillmeter {

// The desktop as a test sets it: what is in front, how long the user has been away, who says that the screen is locked.

class FakeForegroundApplication final : public ForegroundApplicationSource {
 public:
  bool isSupported() const override { return supported; }
  std::optional<RunningApplication> frontmost() override {
    ++reads;
    return application;
  }
  void setActivationHandler(std::function<void(const RunningApplication&)> handler) override {
    activated = std::move(handler);
  }

  // Brings an application to the front, as the window system announces it.
  void activate(RunningApplication next) {
    application = std::move(next);
    if (activated) activated(*application);
  }

  bool supported = true;
  std::optional<RunningApplication> application;
  std::function<void(const RunningApplication&)> activated;
  int reads = 0;
};

class FakeInputIdle final : public InputIdleSource {
 public:
  std::optional<double> idleSeconds() override { return seconds; }
  std::optional<double> seconds = 0.0;
};

class FakeScreenLock final : public ScreenLockSources {
 public:
  std::optional<bool> registryLocked() override { return registry; }
  std::optional<bool> sessionLocked() override { return session; }
  void setLockHandler(std::function<void(bool locked)> handler) override { announce = std::move(handler); }

  std::optional<bool> registry = false;
  std::optional<bool> session;
  std::function<void(bool locked)> announce;
};

class FakeSessionEvents final : public SessionEvents {
 public:
  void setEventHandler(std::function<void(SessionEvent)> handler) override { announce = std::move(handler); }
  std::function<void(SessionEvent)> announce;
};

}  // namespace quillmeter
