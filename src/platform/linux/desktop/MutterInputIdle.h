#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QObject>

#include "platform/InputIdle.h"
#include "platform/linux/desktop/BusCalls.h"
#include "platform/linux/desktop/IdleStopwatch.h"

namespace quillmeter {

// The idle time of a GNOME session by org.gnome.Mutter.IdleMonitor: a watch fires when the user has been away for a
// second, another when input resumes. Main thread.
class MutterInputIdle final : public InputIdleSource {
 public:
  MutterInputIdle(const QDBusConnection& sessionBus, const MonotonicClock& clock);

  std::optional<double> idleSeconds() override;

 private:
  void serviceChanged(bool present);
  void watchActivity();
  void fired(std::uint32_t watch);

  QDBusConnection bus_;
  IdleStopwatch stopwatch_;
  std::optional<std::uint32_t> idleWatch_;
  std::optional<std::uint32_t> activityWatch_;
  std::unique_ptr<BusSignal> signal_;
  std::unique_ptr<QObject> context_;
};

}  // namespace quillmeter
