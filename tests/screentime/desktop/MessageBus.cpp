#include "screentime/desktop/MessageBus.h"

#include <unistd.h>

#include <gtest/gtest.h>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include "screentime/desktop/EventLoop.h"

namespace quillmeter::test {
namespace {

const char* mockInterface = "org.freedesktop.DBus.Mock";
const QString connectionName = QStringLiteral("test");

}  // namespace

std::string MessageBus::missing() {
  if (installedProgram("dbus-daemon").empty()) return "dbus-daemon is not installed";
  static const int code = runProgram({"/usr/bin/python3", "-c", "import dbusmock"}, {});
  return code == 0 ? "" : "python3-dbusmock is not installed";
}

MessageBus::MessageBus() {
  int descriptors[2];
  if (!missing().empty() || pipe(descriptors) != 0) return;
  daemon_ = ChildProcess({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=3"},
                         {.environment = {{"XDG_RUNTIME_DIR", directory_.path()}},
                          .outputFile = "",
                          .inheritedDescriptor = descriptors[1]});
  close(descriptors[1]);
  for (char c = 0; read(descriptors[0], &c, 1) == 1 && c != '\n';) address_ += c;
  close(descriptors[0]);
  connection_ = std::make_unique<QDBusConnection>(
      QDBusConnection::connectToBus(QString::fromStdString(address_), connectionName));
}

MessageBus::~MessageBus() {
  connection_.reset();
  QDBusConnection::disconnectFromBus(connectionName);
}

bool MessageBus::hasName(const std::string& service) {
  return connection_->interface()->isServiceRegistered(QString::fromStdString(service));
}

ChildProcess MessageBus::startMockWith(std::vector<std::string> arguments, const std::string& service) {
  std::vector<std::string> command{"/usr/bin/python3", "-m", "dbusmock"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  const auto log = directory_.path() / "mock.log";
  ChildProcess mock(command,
                    {.environment = {{"DBUS_SESSION_BUS_ADDRESS", address_}, {"DBUS_SYSTEM_BUS_ADDRESS", address_}},
                     .outputFile = log});
  EXPECT_TRUE(waitUntil([&] { return hasName(service); })) << service << " did not start: " << readFile(log);
  return mock;
}

ChildProcess MessageBus::startTemplate(const std::string& name, const std::string& service) {
  return startMockWith({"--template", name}, service);
}

ChildProcess MessageBus::startMock(const std::string& service, const std::string& path, const std::string& interface) {
  return startMockWith({"--session", service, path, interface}, service);
}

QVariant MessageBus::call(const std::string& service, const std::string& path, const std::string& interface,
                          const std::string& method, const QVariantList& arguments) {
  QDBusMessage message =
      QDBusMessage::createMethodCall(QString::fromStdString(service), QString::fromStdString(path),
                                     QString::fromStdString(interface), QString::fromStdString(method));
  message.setArguments(arguments);
  const QDBusMessage reply = connection_->call(message);
  EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << method << ": " << reply.errorMessage().toStdString();
  return reply.arguments().value(0);
}

void MessageBus::addMethod(const std::string& service, const std::string& path, const std::string& interface,
                           const std::string& name, const std::string& in, const std::string& out,
                           const std::string& code) {
  call(service, path, mockInterface, "AddMethod",
       {QString::fromStdString(interface), QString::fromStdString(name), QString::fromStdString(in),
        QString::fromStdString(out), QString::fromStdString(code)});
}

void MessageBus::emitSignal(const std::string& service, const std::string& path, const std::string& interface,
                            const std::string& name, const std::string& signature, const QVariantList& arguments) {
  QVariantList wrapped;
  for (const QVariant& argument : arguments) wrapped.push_back(QVariant::fromValue(QDBusVariant(argument)));
  call(service, path, mockInterface, "EmitSignal",
       {QString::fromStdString(interface), QString::fromStdString(name), QString::fromStdString(signature),
        QVariant::fromValue(wrapped)});
}

}  // namespace quillmeter::test
