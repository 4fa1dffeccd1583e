#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "platform/ForegroundApplication.h"
#include "platform/linux/desktop/ApplicationEntryIndex.h"
#include "platform/linux/desktop/XcbConnection.h"

namespace quillmeter {

// The window that the window manager names active, by its class and never by its title. Supported while a window
// manager that keeps _NET_ACTIVE_WINDOW runs. Main thread.
class X11ForegroundApplication final : public ForegroundApplicationSource {
 public:
  X11ForegroundApplication(XcbConnection& connection, ApplicationEntryIndex& entries,
                           std::filesystem::path procRoot = "/proc");

  bool isSupported() const override { return hasWindowManager_ && connection_.isAlive(); }
  std::optional<RunningApplication> frontmost() override;
  void setActivationHandler(std::function<void(const RunningApplication&)> handler) override {
    handler_ = std::move(handler);
  }

 private:
  void propertyChanged(std::uint32_t window, std::uint32_t property);
  void selectEvents(std::uint32_t window, std::uint32_t events);
  void findWindowManager();
  void readActiveWindow();
  std::optional<RunningApplication> applicationOf(std::uint32_t window);

  XcbConnection& connection_;
  ApplicationEntryIndex& entries_;
  std::filesystem::path procRoot_;
  std::uint32_t activeWindowAtom_;
  std::uint32_t windowManagerAtom_;
  std::uint32_t supportedAtom_;
  std::uint32_t processIdAtom_;
  bool hasWindowManager_ = false;
  std::uint32_t window_ = 0;
  std::optional<RunningApplication> application_;  // of window_
  std::optional<RunningApplication> announced_;
  std::function<void(const RunningApplication&)> handler_;
};

}  // namespace quillmeter
