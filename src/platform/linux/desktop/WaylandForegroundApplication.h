#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/ForegroundApplication.h"
#include "platform/linux/desktop/ApplicationEntryIndex.h"
#include "platform/linux/desktop/WaylandConnection.h"

struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace quillmeter {

// The window that a wlroots compositor lists as activated, by its application id. The compositor sends titles as well;
// they are not looked at. Main thread.
class WaylandForegroundApplication final : public ForegroundApplicationSource {
 public:
  WaylandForegroundApplication(WaylandConnection& connection, ApplicationEntryIndex& entries);
  WaylandForegroundApplication(const WaylandForegroundApplication&) = delete;
  WaylandForegroundApplication& operator=(const WaylandForegroundApplication&) = delete;
  ~WaylandForegroundApplication() override;

  bool isSupported() const override { return manager_ != nullptr && connection_.isAlive(); }
  std::optional<RunningApplication> frontmost() override;
  void setActivationHandler(std::function<void(const RunningApplication&)> handler) override {
    handler_ = std::move(handler);
  }

 private:
  using Handle = zwlr_foreign_toplevel_handle_v1;
  struct Window {
    std::string applicationId;
    bool activated = false;
  };
  struct Listener;
  void windowDone(Handle* handle);
  void windowClosed(Handle* handle);

  WaylandConnection& connection_;
  ApplicationEntryIndex& entries_;
  zwlr_foreign_toplevel_manager_v1* manager_ = nullptr;
  std::map<Handle*, Window> windows_;
  Handle* front_ = nullptr;
  std::optional<RunningApplication> application_;  // of front_
  std::optional<RunningApplication> announced_;
  std::function<void(const RunningApplication&)> handler_;
};

}  // namespace quillmeter
