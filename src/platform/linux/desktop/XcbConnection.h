#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DescriptorWatcher.h"
#include "platform/TimerFactory.h"

struct xcb_connection_t;

namespace quillmeter {

// One connection to an X server for all that is asked of it, read in the event loop. Ends itself when the server goes.
// Main thread.
class XcbConnection {
 public:
  // A property of a window changed whose changes somebody has selected.
  using PropertyHandler = std::function<void(std::uint32_t window, std::uint32_t property)>;

  // Null when there is no such display. `display` as DISPLAY writes it.
  static std::unique_ptr<XcbConnection> open(const std::string& display, DescriptorWatcher& watcher,
                                             TimerFactory& timers);
  XcbConnection(const XcbConnection&) = delete;
  XcbConnection& operator=(const XcbConnection&) = delete;
  ~XcbConnection();

  xcb_connection_t* get() const { return connection_; }
  std::uint32_t rootWindow() const { return root_; }
  bool isAlive() const;
  using DestroyHandler = std::function<void(std::uint32_t window)>;
  void setPropertyHandler(PropertyHandler handler) { propertyHandler_ = std::move(handler); }
  void setDestroyHandler(DestroyHandler handler) { destroyHandler_ = std::move(handler); }
  std::uint32_t atom(std::string_view name);

  // The first value of a 32-bit property (a window, a number); absent without it.
  std::optional<std::uint32_t> number(std::uint32_t window, std::uint32_t property, std::uint32_t type);
  // All values of a 32-bit property, 1,024 at most.
  std::vector<std::uint32_t> numbers(std::uint32_t window, std::uint32_t property, std::uint32_t type);
  // A text property's bytes, at most 1 KiB.
  std::string text(std::uint32_t window, std::uint32_t property, std::uint32_t type);

  // A reply may have brought events with it that no longer make the descriptor readable. Whoever waited for a reply
  // calls this; the events are handled on the next turn of the event loop.
  void deferEvents();

 private:
  XcbConnection(xcb_connection_t* connection, std::uint32_t root, DescriptorWatcher& watcher, TimerFactory& timers);
  void handleEvents();

  struct FreeEvent {
    void operator()(void* event) const;
  };
  xcb_connection_t* connection_;
  std::uint32_t root_;
  TimerFactory& timers_;
  void handleEvent(const void* event) const;

  PropertyHandler propertyHandler_;
  DestroyHandler destroyHandler_;
  std::deque<std::unique_ptr<void, FreeEvent>> deferred_;
  std::unique_ptr<Timer> deferTimer_;
  std::unique_ptr<DescriptorWatch> watch_;
};

}  // namespace quillmeter
