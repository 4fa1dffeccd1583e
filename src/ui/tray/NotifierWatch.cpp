#include "ui/tray/NotifierWatch.h"

#include <utility>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace quillmeter {

namespace {

constexpr const char* service = "org.kde.StatusNotifierWatcher";
constexpr const char* objectPath = "/StatusNotifierWatcher";
constexpr int patienceMilliseconds = 300;  // at the start only: a panel that hangs must not hold us up

QDBusMessage question() {
  QDBusMessage message = QDBusMessage::createMethodCall(service, objectPath, "org.freedesktop.DBus.Properties", "Get");
  message.setAutoStartService(false);
  message << QString(service) << QStringLiteral("IsStatusNotifierHostRegistered");
  return message;
}

}  // namespace

NotifierWatch::NotifierWatch(QDBusConnection connection, std::function<void()> changed)
    : connection_(std::move(connection)),
      changed_(std::move(changed)),
      services_(service, connection_, QDBusServiceWatcher::WatchForOwnerChange) {
  recheck_.setSingleShot(true);
  QObject::connect(&recheck_, &QTimer::timeout, &services_, [this] { check(); });
  QObject::connect(&services_, &QDBusServiceWatcher::serviceOwnerChanged, &services_, [this] { recheck_.start(); });
  for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    connection_.connect(QString(), objectPath, service, signal, &recheck_, SLOT(start()));
  }
}

void NotifierWatch::checkNow() {
  if (!connection_.isConnected()) return;
  ++asked_;
  take(connection_.call(question(), QDBus::Block, patienceMilliseconds), false);
}

void NotifierWatch::check() {
  auto* pending = new QDBusPendingCallWatcher(connection_.asyncCall(question()), &services_);
  QObject::connect(pending, &QDBusPendingCallWatcher::finished, &services_, [this, pending, number = ++asked_] {
    pending->deleteLater();
    if (number == asked_) take(pending->reply(), true);
  });
}

void NotifierWatch::take(const QDBusMessage& answer, bool tells) {
  const bool isAnswer = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
  const bool hasHost = isAnswer && qdbus_cast<QDBusVariant>(answer.arguments().first()).variant().toBool();
  const QString owner = hasHost ? answer.service() : QString();
  if (hasHost == hasHost_ && owner == owner_) return;
  hasHost_ = hasHost;
  owner_ = owner;
  if (tells) changed_();
}

}  // namespace quillmeter
