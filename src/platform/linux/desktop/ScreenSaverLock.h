#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include "platform/linux/desktop/BusCalls.h"

namespace quillmeter {

// A screen locker on the session bus that tells whether it is active: org.freedesktop.ScreenSaver or a desktop's own of
// the same form. Supported once it has answered GetActive. Main thread.
class ScreenSaverLock {
 public:
  ScreenSaverLock(const QDBusConnection& sessionBus, QString service, QString path);
  static std::unique_ptr<ScreenSaverLock> freedesktop(const QDBusConnection& sessionBus);
  static std::unique_ptr<ScreenSaverLock> gnome(const QDBusConnection& sessionBus);

  // Absent while there is no such locker or it cannot tell.
  std::optional<bool> isActive() const { return active_; }
  void setHandler(std::function<void(bool locked)> handler) { handler_ = std::move(handler); }

 private:
  void serviceChanged(bool present);

  QDBusConnection bus_;
  BusAddress address_;
  std::optional<bool> active_;
  std::function<void(bool locked)> handler_;
  std::unique_ptr<BusSignal> signal_;
  std::unique_ptr<QObject> context_;
};

}  // namespace quillmeter
