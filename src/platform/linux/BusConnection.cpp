#include "platform/linux/BusConnection.h"

#include <poll.h>
#include <systemd/sd-bus.h>

#include <utility>

namespace quillmeter {
namespace {

constexpr int mostMessages = 256;  // handled in one go, so that a flood leaves the event loop its turns

}  // namespace

void BusSlotDeleter::operator()(sd_bus_slot* slot) const {
  sd_bus_slot_unref(slot);
}

// Not flushed: that would wait for a bus that does not read.
void BusConnection::Closer::operator()(sd_bus* bus) const {
  sd_bus_close_unref(bus);
}

BusConnection::BusConnection(Bus bus, DescriptorWatcher* watcher) : which_(bus), watcher_(watcher) {}

BusConnection::~BusConnection() = default;

bool BusConnection::open() {
  if (bus_) return true;
  sd_bus* bus = nullptr;
  const int result = which_ == Bus::system ? sd_bus_open_system(&bus) : sd_bus_open_user(&bus);
  if (result < 0) return false;
  bus_.reset(bus);
  updateWatches();
  return true;
}

void BusConnection::onClosed(std::function<void()> closed) {
  closed_ = std::move(closed);
}

void BusConnection::process() {
  if (!bus_) return;
  for (int i = 0; i < mostMessages; ++i) {
    const int result = sd_bus_process(bus_.get(), nullptr);
    if (result < 0) return close();
    if (result == 0) break;
  }
  updateWatches();
}

void BusConnection::close() {
  readable_.reset();
  writable_.reset();
  bus_.reset();
  const auto closed = closed_;  // the call may replace it
  if (closed) closed();
}

void BusConnection::updateWatches() {
  if (watcher_ == nullptr) return;
  const int descriptor = sd_bus_get_fd(bus_.get());
  const int events = sd_bus_get_events(bus_.get());
  if (descriptor < 0 || events < 0) return;
  if (!readable_) readable_ = watcher_->watch(descriptor, DescriptorEvent::readable, [this] { process(); });
  if ((events & POLLOUT) == 0) {
    writable_.reset();
  } else if (!writable_) {
    writable_ = watcher_->watch(descriptor, DescriptorEvent::writable, [this] { process(); });
  }
}

}  // namespace quillmeter
