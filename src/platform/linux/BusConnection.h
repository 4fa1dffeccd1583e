#pragma once

#include <functional>
#include <memory>

#include "platform/DescriptorWatcher.h"

struct sd_bus;
struct sd_bus_slot;

namespace quillmeter {

// Ends what a slot stands for (a match, a call whose answer is awaited) when destroyed.
struct BusSlotDeleter {
  void operator()(sd_bus_slot* slot) const;
};
using BusSlot = std::unique_ptr<sd_bus_slot, BusSlotDeleter>;

// A connection to one of the D-Bus buses. Nothing on it waits: it is opened, written and read as far as it goes, by the
// watcher in the event loop of the main thread or, without one, at each process(). Owned by who talks on it; main
// thread.
class BusConnection {
 public:
  enum class Bus { system, session };

  // `watcher` may be null.
  BusConnection(Bus bus, DescriptorWatcher* watcher);
  ~BusConnection();

  // False when there is no such bus.
  bool open();
  bool isOpen() const { return bus_ != nullptr; }
  // Null while it is not open.
  sd_bus* handle() const { return bus_.get(); }
  // Handles what has arrived, and sends what could not be sent yet. Needed after each send on the handle.
  void process();
  // `closed` is called after the bus went away, from within process() or the event loop.
  void onClosed(std::function<void()> closed);

 private:
  struct Closer {
    void operator()(sd_bus* bus) const;
  };
  void close();
  void updateWatches();

  Bus which_;
  DescriptorWatcher* watcher_;
  std::unique_ptr<sd_bus, Closer> bus_;
  std::unique_ptr<DescriptorWatch> readable_, writable_;
  std::function<void()> closed_;
};

}  // namespace quillmeter
