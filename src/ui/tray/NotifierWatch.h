#pragma once

#include <functional>

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QString>
#include <QTimer>

class QDBusMessage;

namespace quillmeter {

// Whether a panel on the message bus shows items: the watcher of status notifiers has an owner and a host has
// registered with it. Follows both by the bus's signals, without polling. Owned by the tray item; main thread.
class NotifierWatch {
 public:
  // `changed` is called when a host appeared, vanished or belongs to another watcher.
  NotifierWatch(QDBusConnection connection, std::function<void()> changed);
  NotifierWatch(const NotifierWatch&) = delete;
  NotifierWatch& operator=(const NotifierWatch&) = delete;

  // Asks and waits a moment, without calling `changed`: for the start.
  void checkNow();
  bool hasHost() const { return hasHost_; }
  // The bus name of the watcher; items are known to this one only.
  const QString& owner() const { return owner_; }

 private:
  void check();
  void take(const QDBusMessage& answer, bool tells);

  QDBusConnection connection_;
  std::function<void()> changed_;
  QDBusServiceWatcher services_;
  QTimer recheck_;  // started by the bus's signals: a timer has a slot for that
  bool hasHost_ = false;
  QString owner_;
  quint64 asked_ = 0;  // answers to older questions are passed over
};

}  // namespace quillmeter
