#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QVariantMap>

#include "platform/linux/desktop/BusCalls.h"

namespace quillmeter {

// What the login manager knows of this user's session and of the machine's sleep. All of it comes as replies and
// signals and is kept here; asking never waits. Holds a delay lock, so that the machine does not sleep before willSleep
// has been handled. Main thread.
class LogindSession {
 public:
  struct Handlers {
    std::function<void(bool locked)> lockAnnounced;  // the signals Lock and Unlock
    std::function<void(bool asleep)> sleepChanged;
    std::function<void(bool active)> activeChanged;
  };

  // `sessionId` as XDG_SESSION_ID names it; empty for the session that the login manager takes this process to belong
  // to.
  LogindSession(const QDBusConnection& systemBus, std::string sessionId);

  void setHandlers(Handlers handlers);
  // Absent while there is no login manager or no session.
  std::optional<bool> isLocked() const { return locked_; }
  std::optional<bool> isActive() const { return active_; }
  bool holdsSleepDelay() const { return sleepDelay_.isValid(); }

 private:
  void serviceChanged(bool present);
  void findSession();
  void askForSession(const QString& id);
  void observe(const QString& path);
  void apply(const QVariantMap& properties);
  void sleepAnnounced(bool asleep);
  void takeSleepDelay();

  QDBusConnection bus_;
  std::string sessionId_;
  Handlers handlers_;
  std::optional<bool> locked_;
  std::optional<bool> active_;
  QDBusUnixFileDescriptor sleepDelay_;
  std::vector<std::unique_ptr<BusSignal>> sessionSignals_;
  std::unique_ptr<BusSignal> sleepSignal_;
  std::unique_ptr<BusSignal> newSessionSignal_;
  std::unique_ptr<QObject> context_;  // replies that come after it has ended are dropped
};

}  // namespace quillmeter
