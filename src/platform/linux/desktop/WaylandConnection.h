#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DescriptorWatcher.h"

struct wl_display;
struct wl_interface;
struct wl_output;
struct wl_registry;
struct wl_seat;

namespace quillmeter {

// One connection to a Wayland compositor for all that is asked of it, read in the event loop. Ends itself when the
// compositor goes. Who uses it ends before it. Main thread.
class WaylandConnection {
 public:
  // Called with each output that comes (true, and the global's number) or goes.
  using OutputHandler = std::function<void(std::uint32_t name, bool present)>;

  // Null when there is no such compositor. `socket` is a name below the runtime directory or an absolute path.
  static std::unique_ptr<WaylandConnection> open(const std::string& socket, DescriptorWatcher& watcher);
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;
  ~WaylandConnection();

  bool isAlive() const { return alive_; }
  bool offers(std::string_view interface) const;
  // Binds the first global of this interface, in the version both sides know; null when the compositor has none.
  void* bind(const wl_interface& interface, std::uint32_t maximumVersion);
  void* bindNumbered(std::uint32_t name, const wl_interface& interface, std::uint32_t version);
  // The first seat; null when there is none.
  wl_seat* seat();
  // Tells of the outputs that are there already at once.
  void setOutputHandler(OutputHandler handler);
  // Waits until the compositor has answered all requests; for the start only.
  void roundTrip();
  void flush();

 private:
  struct Global {
    std::string interface;
    std::uint32_t version = 0;
  };
  struct Listener;
  WaylandConnection(wl_display* display, DescriptorWatcher& watcher);
  void readEvents();
  void checkAlive();

  wl_display* display_;
  wl_registry* registry_ = nullptr;
  wl_seat* seat_ = nullptr;
  bool alive_ = true;
  std::map<std::uint32_t, Global> globals_;
  OutputHandler outputHandler_;
  std::unique_ptr<DescriptorWatch> watch_;
};

}  // namespace quillmeter
