#include "ui/tray/TrayDesktop.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QTest>

namespace quillmeter::test {

namespace {

const std::string watcherName = "org.kde.StatusNotifierWatcher";
const std::string watcherPath = "/StatusNotifierWatcher";
const QString panelName = QStringLiteral("panel");

QDBusConnection panel() {
  return QDBusConnection(panelName);
}

}  // namespace

bool waitFor(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, 20'000);
}

TrayDesktop::TrayDesktop() {
  current_ = this;
  if (!bus_.address().empty()) QDBusConnection::connectToBus(QString::fromStdString(bus_.address()), panelName);
}

TrayDesktop::~TrayDesktop() {
  QDBusConnection::disconnectFromBus(panelName);
  current_ = nullptr;
}

std::string TrayDesktop::missing() {
  if (!MessageBus::missing().empty()) return MessageBus::missing();
  for (const char* program : {"Xvfb", "trayer", "xdotool"}) {
    if (installedProgram(program).empty()) return std::string(program) + " is not installed";
  }
  return {};
}

void TrayDesktop::startWatcher() {
  watcher_ = bus_.startMock(watcherName, watcherPath, watcherName);
  bus_.addMethod(watcherName, watcherPath, watcherName, "RegisterStatusNotifierItem", "s", "", "");
  bus_.call(
      watcherName, watcherPath, "org.freedesktop.DBus.Mock", "AddProperty",
      {QString::fromStdString(watcherName), "IsStatusNotifierHostRegistered", QVariant::fromValue(QDBusVariant(true))});
  bus_.emitSignal(watcherName, watcherPath, watcherName, "StatusNotifierHostRegistered", "", {});
}

void TrayDesktop::endWatcher() {
  watcher_.end();
  EXPECT_TRUE(waitFor([this] { return !bus_.hasName(watcherName); }));
}

int TrayDesktop::registrations() {
  const QVariant calls = bus_.call(watcherName, watcherPath, "org.freedesktop.DBus.Mock", "GetMethodCalls",
                                   {QStringLiteral("RegisterStatusNotifierItem")});
  const QDBusArgument list = qvariant_cast<QDBusArgument>(calls);
  int count = 0;
  list.beginArray();
  while (!list.atEnd()) {
    qulonglong time = 0;
    QVariantList arguments;
    list.beginStructure();
    list >> time >> arguments;
    list.endStructure();
    count += arguments.value(0).toString() == QDBusConnection::sessionBus().baseService();
  }
  list.endArray();
  return count;
}

QDBusMessage TrayDesktop::callItem(const char* path, const char* interface, const char* method,
                                   const QVariantList& arguments) {
  QDBusMessage message =
      QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(), path, interface, method);
  message.setArguments(arguments);
  const QDBusPendingCall pending = panel().asyncCall(message);
  EXPECT_TRUE(waitFor([&pending] { return pending.isFinished(); })) << method;
  return pending.reply();
}

QVariant TrayDesktop::itemProperty(const char* name) {
  const QDBusMessage reply =
      callItem("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get", {"org.kde.StatusNotifierItem", name});
  EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << name << ": " << reply.errorMessage().toStdString();
  return qvariant_cast<QDBusVariant>(reply.arguments().value(0)).variant();
}

// An action has a slot that the bus can call.
void TrayDesktop::countSignal(const char* path, const char* interface, const char* name, int& count) {
  auto counter = std::make_unique<QAction>();
  QObject::connect(counter.get(), &QAction::triggered, counter.get(), [&count] { ++count; });
  EXPECT_TRUE(panel().connect(QString(), path, interface, name, counter.get(), SLOT(trigger())));
  counters_.push_back(std::move(counter));
}

void TrayDesktop::startTrayer() {
  trayer_ = ChildProcess({"trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--height", "28"},
                         {.environment = {{"DISPLAY", display()}, {"HOME", home()}, {"NO_AT_BRIDGE", "1"}}});
}

}  // namespace quillmeter::test
