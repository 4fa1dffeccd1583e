#include "platform/linux/desktop/WaylandInputIdle.h"

#include <cstdint>

#include <wayland-client.h>

#include <ext-idle-notify-v1-client-protocol.h>
#include <kde-idle-client-protocol.h>

namespace quillmeter {
namespace {

constexpr std::uint32_t timeoutMilliseconds = 1'000 * static_cast<std::uint32_t>(IdleStopwatch::thresholdSeconds);

}  // namespace

struct WaylandInputIdle::Listener {
  static void idled(void* self, ext_idle_notification_v1*) { static_cast<WaylandInputIdle*>(self)->stopwatch_.idled(); }
  static void resumed(void* self, ext_idle_notification_v1*) {
    static_cast<WaylandInputIdle*>(self)->stopwatch_.resumed();
  }
  static void kdeIdled(void* self, org_kde_kwin_idle_timeout*) {
    static_cast<WaylandInputIdle*>(self)->stopwatch_.idled();
  }
  static void kdeResumed(void* self, org_kde_kwin_idle_timeout*) {
    static_cast<WaylandInputIdle*>(self)->stopwatch_.resumed();
  }
  static constexpr ext_idle_notification_v1_listener listener{idled, resumed};
  static constexpr org_kde_kwin_idle_timeout_listener kdeListener{kdeIdled, kdeResumed};
};

WaylandInputIdle::WaylandInputIdle(WaylandConnection& connection, const MonotonicClock& clock)
    : connection_(connection), stopwatch_(clock) {
  wl_seat* seat = connection_.seat();
  if (seat == nullptr) return;
  bindNotifier(seat);
  if (notification_ == nullptr) bindKdeIdle(seat);
  connection_.flush();
}

void WaylandInputIdle::bindNotifier(wl_seat* seat) {
  notifier_ = static_cast<ext_idle_notifier_v1*>(connection_.bind(ext_idle_notifier_v1_interface, 1));
  if (notifier_ == nullptr) return;
  notification_ = ext_idle_notifier_v1_get_idle_notification(notifier_, timeoutMilliseconds, seat);
  ext_idle_notification_v1_add_listener(notification_, &Listener::listener, this);
}

void WaylandInputIdle::bindKdeIdle(wl_seat* seat) {
  kdeIdle_ = static_cast<org_kde_kwin_idle*>(connection_.bind(org_kde_kwin_idle_interface, 1));
  if (kdeIdle_ == nullptr) return;
  kdeTimeout_ = org_kde_kwin_idle_get_idle_timeout(kdeIdle_, seat, timeoutMilliseconds);
  org_kde_kwin_idle_timeout_add_listener(kdeTimeout_, &Listener::kdeListener, this);
}

WaylandInputIdle::~WaylandInputIdle() {
  if (notification_ != nullptr) ext_idle_notification_v1_destroy(notification_);
  if (notifier_ != nullptr) ext_idle_notifier_v1_destroy(notifier_);
  if (kdeTimeout_ != nullptr) org_kde_kwin_idle_timeout_release(kdeTimeout_);
  if (kdeIdle_ != nullptr) org_kde_kwin_idle_destroy(kdeIdle_);
}

std::optional<double> WaylandInputIdle::idleSeconds() {
  if (!connection_.isAlive() || (notification_ == nullptr && kdeTimeout_ == nullptr)) return std::nullopt;
  return stopwatch_.seconds();
}

}  // namespace quillmeter
