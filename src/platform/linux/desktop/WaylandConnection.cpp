#include "platform/linux/desktop/WaylandConnection.h"

#include <algorithm>
#include <utility>

#include <wayland-client.h>

namespace quillmeter {

struct WaylandConnection::Listener {
  static void added(void* self, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
    auto& connection = *static_cast<WaylandConnection*>(self);
    connection.globals_[name] = {interface, version};
    if (connection.outputHandler_ && connection.globals_[name].interface == wl_output_interface.name)
      connection.outputHandler_(name, true);
  }
  static void removed(void* self, wl_registry*, std::uint32_t name) {
    auto& connection = *static_cast<WaylandConnection*>(self);
    const auto global = connection.globals_.find(name);
    if (global == connection.globals_.end()) return;
    const bool isOutput = global->second.interface == wl_output_interface.name;
    connection.globals_.erase(global);
    if (isOutput && connection.outputHandler_) connection.outputHandler_(name, false);
  }
  static constexpr wl_registry_listener listener{added, removed};
};

std::unique_ptr<WaylandConnection> WaylandConnection::open(const std::string& socket, DescriptorWatcher& watcher) {
  wl_display* display = wl_display_connect(socket.c_str());
  if (display == nullptr) return nullptr;
  std::unique_ptr<WaylandConnection> connection(new WaylandConnection(display, watcher));
  connection->roundTrip();
  return connection->isAlive() ? std::move(connection) : nullptr;
}

WaylandConnection::WaylandConnection(wl_display* display, DescriptorWatcher& watcher) : display_(display) {
  registry_ = wl_display_get_registry(display_);
  wl_registry_add_listener(registry_, &Listener::listener, this);
  watch_ = watcher.watch(wl_display_get_fd(display_), DescriptorEvent::readable, [this] { readEvents(); });
}

WaylandConnection::~WaylandConnection() {
  watch_.reset();
  if (seat_ != nullptr) wl_seat_destroy(seat_);
  wl_registry_destroy(registry_);
  wl_display_disconnect(display_);
}

bool WaylandConnection::offers(std::string_view interface) const {
  return std::ranges::any_of(globals_, [&](const auto& global) { return global.second.interface == interface; });
}

void* WaylandConnection::bind(const wl_interface& interface, std::uint32_t maximumVersion) {
  const auto global =
      std::ranges::find_if(globals_, [&](const auto& entry) { return entry.second.interface == interface.name; });
  if (global == globals_.end()) return nullptr;
  return bindNumbered(global->first, interface, std::min(global->second.version, maximumVersion));
}

void* WaylandConnection::bindNumbered(std::uint32_t name, const wl_interface& interface, std::uint32_t version) {
  return wl_registry_bind(registry_, name, &interface, version);
}

wl_seat* WaylandConnection::seat() {
  if (seat_ == nullptr) seat_ = static_cast<wl_seat*>(bind(wl_seat_interface, 1));
  return seat_;
}

void WaylandConnection::setOutputHandler(OutputHandler handler) {
  outputHandler_ = std::move(handler);
  if (!outputHandler_) return;
  for (const auto& [name, global] : globals_) {
    if (global.interface == wl_output_interface.name) outputHandler_(name, true);
  }
}

void WaylandConnection::roundTrip() {
  wl_display_roundtrip(display_);
  checkAlive();
}

void WaylandConnection::flush() {
  wl_display_flush(display_);
  checkAlive();
}

void WaylandConnection::readEvents() {
  while (wl_display_prepare_read(display_) != 0) wl_display_dispatch_pending(display_);
  wl_display_read_events(display_);
  wl_display_dispatch_pending(display_);
  flush();
}

void WaylandConnection::checkAlive() {
  if (wl_display_get_error(display_) == 0) return;
  alive_ = false;
  watch_.reset();  // a closed socket stays readable for ever
}

}  // namespace quillmeter
