#include "platform/linux/desktop/XcbConnection.h"

#include <cstdlib>
#include <utility>

#include <xcb/xcb.h>

namespace quillmeter {
namespace {

constexpr std::uint32_t maximumPropertyValues = 1'024;
constexpr std::uint32_t maximumTextWords = 256;

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
  return {reply, &std::free};
}

const xcb_screen_t* screenNumber(const xcb_connection_t* connection, int number) {
  // xcb wants a mutable connection here only because its setup is shared.
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(const_cast<xcb_connection_t*>(connection)));
  for (; screens.rem > 0 && number > 0; --number) xcb_screen_next(&screens);
  return screens.rem > 0 ? screens.data : nullptr;
}

}  // namespace

void XcbConnection::FreeEvent::operator()(void* event) const {
  std::free(event);
}

std::unique_ptr<XcbConnection> XcbConnection::open(const std::string& display, DescriptorWatcher& watcher,
                                                   TimerFactory& timers) {
  int number = 0;
  xcb_connection_t* connection = xcb_connect(display.c_str(), &number);
  const xcb_screen_t* screen = xcb_connection_has_error(connection) == 0 ? screenNumber(connection, number) : nullptr;
  if (screen == nullptr) {
    xcb_disconnect(connection);
    return nullptr;
  }
  return std::unique_ptr<XcbConnection>(new XcbConnection(connection, screen->root, watcher, timers));
}

XcbConnection::XcbConnection(xcb_connection_t* connection, std::uint32_t root, DescriptorWatcher& watcher,
                             TimerFactory& timers)
    : connection_(connection), root_(root), timers_(timers) {
  watch_ = watcher.watch(xcb_get_file_descriptor(connection_), DescriptorEvent::readable, [this] { handleEvents(); });
}

XcbConnection::~XcbConnection() {
  watch_.reset();
  xcb_disconnect(connection_);
}

bool XcbConnection::isAlive() const {
  return xcb_connection_has_error(connection_) == 0;
}

void XcbConnection::handleEvents() {
  while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) deferred_.emplace_back(event);
  if (!isAlive()) watch_.reset();  // a closed socket stays readable for ever
  while (!deferred_.empty()) {
    const auto event = std::move(deferred_.front());
    deferred_.pop_front();
    handleEvent(event.get());
  }
}

void XcbConnection::handleEvent(const void* event) const {
  switch (static_cast<const xcb_generic_event_t*>(event)->response_type & 0x7fU) {
    case XCB_PROPERTY_NOTIFY: {
      const auto* changed = static_cast<const xcb_property_notify_event_t*>(event);
      if (propertyHandler_) propertyHandler_(changed->window, changed->atom);
      break;
    }
    case XCB_DESTROY_NOTIFY:
      if (destroyHandler_) destroyHandler_(static_cast<const xcb_destroy_notify_event_t*>(event)->window);
      break;
    default:
      break;
  }
}

void XcbConnection::deferEvents() {
  while (xcb_generic_event_t* event = xcb_poll_for_queued_event(connection_)) deferred_.emplace_back(event);
  if (!deferred_.empty()) deferTimer_ = timers_.once(0, [this] { handleEvents(); });
}

std::uint32_t XcbConnection::atom(std::string_view name) {
  const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = owned(xcb_intern_atom_reply(connection_, cookie, nullptr));
  return reply ? reply->atom : static_cast<std::uint32_t>(XCB_ATOM_NONE);
}

std::optional<std::uint32_t> XcbConnection::number(std::uint32_t window, std::uint32_t property, std::uint32_t type) {
  const auto values = numbers(window, property, type);
  return values.empty() ? std::nullopt : std::optional(values.front());
}

std::vector<std::uint32_t> XcbConnection::numbers(std::uint32_t window, std::uint32_t property, std::uint32_t type) {
  const auto cookie = xcb_get_property(connection_, 0, window, property, type, 0, maximumPropertyValues);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->type != type || reply->format != 32) return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

std::string XcbConnection::text(std::uint32_t window, std::uint32_t property, std::uint32_t type) {
  const auto cookie = xcb_get_property(connection_, 0, window, property, type, 0, maximumTextWords);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

}  // namespace quillmeter
