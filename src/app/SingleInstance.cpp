#include "app/SingleInstance.h"

#include <cstdlib>
#include <utility>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <QMetaObject>
#include <QVariantMap>

namespace quillmeter {
namespace {

constexpr const char* applicationInterface = "org.freedesktop.Application";
constexpr int answerMilliseconds = 5000;

// What lets the first instance take the focus: the token of the launcher that started this one.
QVariantMap platformData() {
  QVariantMap data;
  if (const char* token = std::getenv("XDG_ACTIVATION_TOKEN")) data["activation-token"] = QString::fromUtf8(token);
  if (const char* startup = std::getenv("DESKTOP_STARTUP_ID")) data["desktop-startup-id"] = QString::fromUtf8(startup);
  return data;
}

// The toolkit takes the token for its next request to activate a window from the environment.
void adoptActivationToken(const QVariant& platformData) {
  const QVariantMap data = qdbus_cast<QVariantMap>(platformData);
  const QByteArray token = data.value("activation-token").toString().toUtf8();
  if (!token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token);
}

}  // namespace

// Answers the calls. Each wish is carried out after the answer went out, so that who asked need not wait for it.
class SingleInstance::Object final : public QDBusVirtualObject {
 public:
  explicit Object(Handlers handlers) : handlers_(std::move(handlers)) {}

  QString introspect(const QString& path) const override {
    if (path != objectPath) return {};
    return QStringLiteral(
        "<interface name=\"org.freedesktop.Application\">"
        "<method name=\"Activate\"><arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
        "<method name=\"Open\"><arg type=\"as\" name=\"uris\" direction=\"in\"/>"
        "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
        "<method name=\"ActivateAction\"><arg type=\"s\" name=\"action_name\" direction=\"in\"/>"
        "<arg type=\"av\" name=\"parameter\" direction=\"in\"/>"
        "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
        "</interface>");
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.path() != objectPath) return false;
    if (!message.interface().isEmpty() && message.interface() != applicationInterface) return false;
    const QList<QVariant> arguments = message.arguments();
    if (message.member() == "Activate" && message.signature() == "a{sv}") {
      adoptActivationToken(arguments.at(0));
      later([this] { handlers_.activate(); });
    } else if (message.member() == "Open" && message.signature() == "asa{sv}") {
      adoptActivationToken(arguments.at(1));
      later([this] { handlers_.activate(); });
    } else if (message.member() == "ActivateAction" && message.signature() == "sava{sv}") {
      const auto action = appActionNamed(arguments.at(0).toString().toStdString());
      if (!action) {
        connection.send(message.createErrorReply(QDBusError::InvalidArgs, "unknown action"));
        return true;
      }
      adoptActivationToken(arguments.at(2));
      later([this, action = *action] { handlers_.act(action); });
    } else {
      return false;
    }
    connection.send(message.createReply());
    return true;
  }

 private:
  void later(std::function<void()> wish) { QMetaObject::invokeMethod(this, std::move(wish), Qt::QueuedConnection); }

  Handlers handlers_;
};

SingleInstance::SingleInstance(Handlers handlers) : object_(std::make_unique<Object>(std::move(handlers))) {}

SingleInstance::~SingleInstance() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.unregisterService(busName);
  bus.unregisterObject(objectPath);
}

SingleInstance::Role SingleInstance::claim() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return Role::first;
  // The object first: who finds the name finds it answering.
  bus.registerVirtualObject(objectPath, object_.get(), QDBusConnection::SingleNode);
  const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = bus.interface()->registerService(
      busName, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
  const bool isTaken = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceNotRegistered;
  return isTaken ? Role::second : Role::first;
}

bool SingleInstance::askFirst(const std::string& action) {
  QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, applicationInterface,
                                                     action.empty() ? "Activate" : "ActivateAction");
  if (!action.empty()) call << QString::fromStdString(action) << QVariant(QVariantList());
  call << platformData();
  call.setAutoStartService(false);
  return QDBusConnection::sessionBus().call(call, QDBus::Block, answerMilliseconds).type() ==
         QDBusMessage::ReplyMessage;
}

}  // namespace quillmeter
