#include "platform/linux/desktop/BusCalls.h"

#include <utility>

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

namespace quillmeter {

BusSignal::BusSignal(const QDBusConnection& bus, const QString& service, const QString& path, const QString& interface,
                     const QString& name, Handler handler)
    : bus_(bus), service_(service), path_(path), interface_(interface), name_(name), handler_(std::move(handler)) {
  bus_.connect(service_, path_, interface_, name_, this, SLOT(received(QDBusMessage)));
}

BusSignal::~BusSignal() {
  bus_.disconnect(service_, path_, interface_, name_, this, SLOT(received(QDBusMessage)));
}

void BusSignal::received(const QDBusMessage& message) {
  handler_(message);
}

void callBus(const QDBusConnection& bus, const BusAddress& address, const QString& method,
             const QVariantList& arguments, QObject* context, std::function<void(const QDBusMessage& reply)> answered) {
  QDBusMessage call = QDBusMessage::createMethodCall(address.service, address.path, address.interface, method);
  call.setArguments(arguments);
  call.setAutoStartService(false);
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), context);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                   [answered = std::move(answered)](QDBusPendingCallWatcher* finished) {
                     finished->deleteLater();
                     answered(finished->reply());
                   });
}

void watchBusService(const QDBusConnection& bus, const QString& service, QObject* context,
                     std::function<void(bool present)> changed) {
  auto* watcher = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, context);
  QObject::connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, context,
                   [changed](const QString&, const QString&, const QString& owner) { changed(!owner.isEmpty()); });
  const BusAddress daemon{QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                          QStringLiteral("org.freedesktop.DBus")};
  callBus(bus, daemon, QStringLiteral("NameHasOwner"), {service}, context, [changed](const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ReplyMessage) changed(reply.arguments().value(0).toBool());
  });
}

}  // namespace quillmeter
