#include "platform/linux/desktop/ScreenSaverLock.h"

#include <utility>

namespace quillmeter {

ScreenSaverLock::ScreenSaverLock(const QDBusConnection& sessionBus, QString service, QString path)
    : bus_(sessionBus), address_{service, std::move(path), service}, context_(std::make_unique<QObject>()) {
  watchBusService(bus_, service, context_.get(), [this](bool present) { serviceChanged(present); });
}

std::unique_ptr<ScreenSaverLock> ScreenSaverLock::freedesktop(const QDBusConnection& sessionBus) {
  return std::make_unique<ScreenSaverLock>(sessionBus, QStringLiteral("org.freedesktop.ScreenSaver"),
                                           QStringLiteral("/org/freedesktop/ScreenSaver"));
}

std::unique_ptr<ScreenSaverLock> ScreenSaverLock::gnome(const QDBusConnection& sessionBus) {
  return std::make_unique<ScreenSaverLock>(sessionBus, QStringLiteral("org.gnome.ScreenSaver"),
                                           QStringLiteral("/org/gnome/ScreenSaver"));
}

void ScreenSaverLock::serviceChanged(bool present) {
  active_.reset();
  signal_.reset();
  if (!present) return;
  signal_ = std::make_unique<BusSignal>(bus_, address_.service, address_.path, address_.interface,
                                        QStringLiteral("ActiveChanged"), [this](const QDBusMessage& message) {
                                          active_ = message.arguments().value(0).toBool();
                                          if (handler_) handler_(*active_);
                                        });
  callBus(bus_, address_, QStringLiteral("GetActive"), {}, context_.get(), [this](const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ReplyMessage) active_ = reply.arguments().value(0).toBool();
  });
}

}  // namespace quillmeter
