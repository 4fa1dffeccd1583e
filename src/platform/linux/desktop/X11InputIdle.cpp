#include "platform/linux/desktop/X11InputIdle.h"

#include <cstdlib>

#include <xcb/dpms.h>
#include <xcb/screensaver.h>
#include <xcb/xcb.h>

namespace quillmeter {
namespace {

bool hasExtension(xcb_connection_t* connection, xcb_extension_t* extension) {
  const xcb_query_extension_reply_t* reply = xcb_get_extension_data(connection, extension);
  return reply != nullptr && reply->present != 0;
}

}  // namespace

X11InputIdle::X11InputIdle(XcbConnection& connection, TimerFactory& timers)
    : connection_(connection),
      timers_(timers),
      hasScreenSaver_(hasExtension(connection.get(), &xcb_screensaver_id)),
      hasDpms_(hasExtension(connection.get(), &xcb_dpms_id)) {}

std::optional<double> X11InputIdle::idleSeconds() {
  constexpr double millisecondsPerSecond = 1'000;
  if (!hasScreenSaver_ || !connection_.isAlive()) return std::nullopt;
  xcb_connection_t* connection = connection_.get();
  const auto idleCookie = xcb_screensaver_query_info(connection, connection_.rootWindow());
  xcb_dpms_info_cookie_t powerCookie{};
  if (hasDpms_) powerCookie = xcb_dpms_info(connection);
  xcb_screensaver_query_info_reply_t* idle = xcb_screensaver_query_info_reply(connection, idleCookie, nullptr);
  if (hasDpms_) {
    xcb_dpms_info_reply_t* power = xcb_dpms_info_reply(connection, powerCookie, nullptr);
    if (power != nullptr) noteDisplays(power->state != 0 && power->power_level != XCB_DPMS_DPMS_MODE_ON);
    std::free(power);
  }
  connection_.deferEvents();
  if (idle == nullptr) return std::nullopt;
  const double seconds = idle->ms_since_user_input / millisecondsPerSecond;
  std::free(idle);
  return seconds;
}

// Told on the next turn of the event loop: the change is found while somebody asks for the idle time.
void X11InputIdle::noteDisplays(bool asleep) {
  if (asleep == asleep_) return;
  asleep_ = asleep;
  announcement_ = timers_.once(0, [this] {
    if (handler_) handler_(asleep_);
  });
}

}  // namespace quillmeter
