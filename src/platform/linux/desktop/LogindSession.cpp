#include "platform/linux/desktop/LogindSession.h"

#include <utility>

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace quillmeter {
namespace {

const QString service = QStringLiteral("org.freedesktop.login1");
const QString managerInterface = QStringLiteral("org.freedesktop.login1.Manager");
const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

BusAddress manager() {
  return {service, QStringLiteral("/org/freedesktop/login1"), managerInterface};
}

bool isReply(const QDBusMessage& message) {
  return message.type() == QDBusMessage::ReplyMessage;
}

}  // namespace

LogindSession::LogindSession(const QDBusConnection& systemBus, std::string sessionId)
    : bus_(systemBus), sessionId_(std::move(sessionId)), context_(std::make_unique<QObject>()) {
  watchBusService(bus_, service, context_.get(), [this](bool present) { serviceChanged(present); });
}

void LogindSession::setHandlers(Handlers handlers) {
  handlers_ = std::move(handlers);
  if (active_ == false && handlers_.activeChanged) handlers_.activeChanged(false);
}

void LogindSession::serviceChanged(bool present) {
  sessionSignals_.clear();
  sleepSignal_.reset();
  newSessionSignal_.reset();
  sleepDelay_ = QDBusUnixFileDescriptor();
  locked_.reset();
  if (!present) return;  // what was true of the session's place stays true until the service is back
  sleepSignal_ = std::make_unique<BusSignal>(
      bus_, service, manager().path, managerInterface, QStringLiteral("PrepareForSleep"),
      [this](const QDBusMessage& message) { sleepAnnounced(message.arguments().value(0).toBool()); });
  // The first session of a user may begin after the services that belong to it.
  newSessionSignal_ = std::make_unique<BusSignal>(bus_, service, manager().path, managerInterface,
                                                  QStringLiteral("SessionNew"), [this](const QDBusMessage&) {
                                                    if (sessionSignals_.empty()) findSession();
                                                  });
  takeSleepDelay();
  findSession();
}

// Signals come from the session's own path, so that the alias "auto" serves for its id only.
void LogindSession::findSession() {
  if (!sessionId_.empty()) return askForSession(QString::fromStdString(sessionId_));
  const BusAddress own{service, QStringLiteral("/org/freedesktop/login1/session/auto"), propertiesInterface};
  callBus(bus_, own, QStringLiteral("Get"), {sessionInterface, QStringLiteral("Id")}, context_.get(),
          [this](const QDBusMessage& reply) {
            if (isReply(reply)) askForSession(reply.arguments().value(0).value<QDBusVariant>().variant().toString());
          });
}

void LogindSession::askForSession(const QString& id) {
  callBus(bus_, manager(), QStringLiteral("GetSession"), {id}, context_.get(), [this](const QDBusMessage& reply) {
    if (isReply(reply)) observe(reply.arguments().value(0).value<QDBusObjectPath>().path());
  });
}

void LogindSession::observe(const QString& path) {
  sessionSignals_.clear();
  const auto listen = [&](const QString& interface, const QString& name, BusSignal::Handler handler) {
    sessionSignals_.push_back(std::make_unique<BusSignal>(bus_, service, path, interface, name, std::move(handler)));
  };
  listen(sessionInterface, QStringLiteral("Lock"), [this](const QDBusMessage&) {
    if (handlers_.lockAnnounced) handlers_.lockAnnounced(true);
  });
  listen(sessionInterface, QStringLiteral("Unlock"), [this](const QDBusMessage&) {
    if (handlers_.lockAnnounced) handlers_.lockAnnounced(false);
  });
  listen(propertiesInterface, QStringLiteral("PropertiesChanged"), [this](const QDBusMessage& message) {
    if (message.arguments().value(0).toString() == sessionInterface)
      apply(qdbus_cast<QVariantMap>(message.arguments().value(1)));
  });
  callBus(bus_, {service, path, propertiesInterface}, QStringLiteral("GetAll"), {sessionInterface}, context_.get(),
          [this](const QDBusMessage& reply) {
            if (isReply(reply)) apply(qdbus_cast<QVariantMap>(reply.arguments().value(0)));
          });
}

void LogindSession::apply(const QVariantMap& properties) {
  if (const auto locked = properties.find(QStringLiteral("LockedHint")); locked != properties.end())
    locked_ = locked->toBool();
  const auto active = properties.find(QStringLiteral("Active"));
  if (active == properties.end()) return;
  const bool was = active_.value_or(true);
  active_ = active->toBool();
  if (was != *active_ && handlers_.activeChanged) handlers_.activeChanged(*active_);
}

void LogindSession::sleepAnnounced(bool asleep) {
  if (handlers_.sleepChanged) handlers_.sleepChanged(asleep);
  if (asleep) {
    sleepDelay_ = QDBusUnixFileDescriptor();  // the machine may go now
  } else {
    takeSleepDelay();
  }
}

void LogindSession::takeSleepDelay() {
  const QVariantList arguments{QStringLiteral("sleep"), QStringLiteral("Quillmeter"),
                               QStringLiteral("Save the screen-time record"), QStringLiteral("delay")};
  callBus(bus_, manager(), QStringLiteral("Inhibit"), arguments, context_.get(), [this](const QDBusMessage& reply) {
    if (isReply(reply)) sleepDelay_ = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
  });
}

}  // namespace quillmeter
