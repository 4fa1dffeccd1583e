#include "platform/linux/desktop/WaylandForegroundApplication.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include <wayland-client.h>

#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>

namespace quillmeter {

struct WaylandForegroundApplication::Listener {
  static WaylandForegroundApplication& of(void* self) { return *static_cast<WaylandForegroundApplication*>(self); }

  static void toplevel(void* self, zwlr_foreign_toplevel_manager_v1*, Handle* handle) {
    of(self).windows_.emplace(handle, Window());
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &handleListener, self);
  }
  static void finished(void* self, zwlr_foreign_toplevel_manager_v1* manager) {
    of(self).manager_ = nullptr;
    zwlr_foreign_toplevel_manager_v1_destroy(manager);
  }
  static void title(void*, Handle*, const char*) {}
  static void applicationId(void* self, Handle* handle, const char* id) {
    of(self).windows_[handle].applicationId = id;
  }
  static void outputEntered(void*, Handle*, wl_output*) {}
  static void outputLeft(void*, Handle*, wl_output*) {}
  static void state(void* self, Handle* handle, wl_array* states) {
    const std::span values(static_cast<const std::uint32_t*>(states->data), states->size / sizeof(std::uint32_t));
    of(self).windows_[handle].activated =
        std::ranges::find(values, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != values.end();
  }
  static void done(void* self, Handle* handle) { of(self).windowDone(handle); }
  static void closed(void* self, Handle* handle) { of(self).windowClosed(handle); }
  static void parent(void*, Handle*, Handle*) {}

  static constexpr zwlr_foreign_toplevel_manager_v1_listener managerListener{toplevel, finished};
  static constexpr zwlr_foreign_toplevel_handle_v1_listener handleListener{
      title, applicationId, outputEntered, outputLeft, state, done, closed, parent};
};

WaylandForegroundApplication::WaylandForegroundApplication(WaylandConnection& connection,
                                                           ApplicationEntryIndex& entries)
    : connection_(connection), entries_(entries) {
  constexpr std::uint32_t knownVersion = 3;
  manager_ = static_cast<zwlr_foreign_toplevel_manager_v1*>(
      connection_.bind(zwlr_foreign_toplevel_manager_v1_interface, knownVersion));
  if (manager_ == nullptr) return;
  zwlr_foreign_toplevel_manager_v1_add_listener(manager_, &Listener::managerListener, this);
  connection_.roundTrip();
}

WaylandForegroundApplication::~WaylandForegroundApplication() {
  for (const auto& [handle, window] : windows_) zwlr_foreign_toplevel_handle_v1_destroy(handle);
  if (manager_ != nullptr) zwlr_foreign_toplevel_manager_v1_destroy(manager_);
}

void WaylandForegroundApplication::windowDone(Handle* handle) {
  const Window& window = windows_[handle];
  if (window.activated) {
    front_ = handle;
    application_ = entries_.applicationFor(window.applicationId, "");
  } else if (front_ == handle) {
    front_ = nullptr;  // the next one follows at once, or there is none
    application_.reset();
  }
  if (!application_ || application_ == announced_) return;
  announced_ = application_;
  if (handler_) handler_(*announced_);
}

void WaylandForegroundApplication::windowClosed(Handle* handle) {
  if (front_ == handle) {
    front_ = nullptr;
    application_.reset();
  }
  windows_.erase(handle);
  zwlr_foreign_toplevel_handle_v1_destroy(handle);
}

std::optional<RunningApplication> WaylandForegroundApplication::frontmost() {
  return isSupported() ? application_ : std::nullopt;
}

}  // namespace quillmeter
