#pragma once

#include <optional>

#include "platform/InputIdle.h"
#include "platform/linux/desktop/IdleStopwatch.h"
#include "platform/linux/desktop/WaylandConnection.h"

struct ext_idle_notification_v1;
struct ext_idle_notifier_v1;
struct org_kde_kwin_idle;
struct org_kde_kwin_idle_timeout;

namespace quillmeter {

// The idle time of the seat by ext-idle-notify-v1, else by org_kde_kwin_idle. Both tell when the user has been away for
// a second and when input resumes. Main thread.
class WaylandInputIdle final : public InputIdleSource {
 public:
  WaylandInputIdle(WaylandConnection& connection, const MonotonicClock& clock);
  WaylandInputIdle(const WaylandInputIdle&) = delete;
  WaylandInputIdle& operator=(const WaylandInputIdle&) = delete;
  ~WaylandInputIdle() override;

  std::optional<double> idleSeconds() override;

 private:
  struct Listener;
  void bindNotifier(wl_seat* seat);
  void bindKdeIdle(wl_seat* seat);

  WaylandConnection& connection_;
  IdleStopwatch stopwatch_;
  ext_idle_notifier_v1* notifier_ = nullptr;
  ext_idle_notification_v1* notification_ = nullptr;
  org_kde_kwin_idle* kdeIdle_ = nullptr;
  org_kde_kwin_idle_timeout* kdeTimeout_ = nullptr;
};

}  // namespace quillmeter
