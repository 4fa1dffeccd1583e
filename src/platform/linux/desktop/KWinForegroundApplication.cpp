#include "platform/linux/desktop/KWinForegroundApplication.h"

#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

#include "base/AtomicFile.h"

namespace quillmeter {
namespace {

const QString receiverPath = QStringLiteral("/com/kesto/Quillmeter/ActiveWindow");

BusAddress scripting() {
  return {QStringLiteral("org.kde.KWin"), QStringLiteral("/Scripting"), QStringLiteral("org.kde.kwin.Scripting")};
}

// KWin 6 calls "window" what KWin 5 calls "client".
constexpr std::string_view scriptText =
    "function report(w) { callDBus('%SERVICE%', '%PATH%', 'com.kesto.Quillmeter.ActiveWindow', 'Activated',\n"
    "    w ? String(w.resourceClass || '') : '', w ? String(w.desktopFileName || '') : ''); }\n"
    "(workspace.windowActivated || workspace.clientActivated).connect(report);\n"
    "report(workspace.activeWindow === undefined ? workspace.activeClient : workspace.activeWindow);\n";

void replace(std::string& text, std::string_view mark, const std::string& value) {
  if (const std::size_t position = text.find(mark); position != std::string::npos)
    text.replace(position, mark.size(), value);
}

}  // namespace

KWinForegroundApplication::KWinForegroundApplication(const QDBusConnection& sessionBus, ApplicationEntryIndex& entries,
                                                     std::filesystem::path scriptFolder)
    : bus_(sessionBus),
      entries_(entries),
      scriptFolder_(std::move(scriptFolder)),
      receiver_(
          [this](const QString& resourceClass, const QString& desktopFile) { activated(resourceClass, desktopFile); }),
      context_(std::make_unique<QObject>()) {
  bus_.registerObject(receiverPath, &receiver_, QDBusConnection::ExportAllSlots);
  watchBusService(bus_, scripting().service, context_.get(), [this](bool present) { serviceChanged(present); });
}

KWinForegroundApplication::~KWinForegroundApplication() {
  if (running_) {
    QDBusMessage call = QDBusMessage::createMethodCall(scripting().service, scripting().path, scripting().interface,
                                                       QStringLiteral("unloadScript"));
    call.setArguments({scriptName()});
    bus_.send(call);
  }
  bus_.unregisterObject(receiverPath);
  std::error_code ignored;
  std::filesystem::remove(scriptPath(), ignored);
}

// One a process: two programs of ours may run beside each other.
std::filesystem::path KWinForegroundApplication::scriptPath() const {
  return scriptFolder_ / ("kwin-active-window-" + std::to_string(getpid()) + ".js");
}

QString KWinForegroundApplication::scriptName() const {
  return QStringLiteral("com.kesto.Quillmeter.ActiveWindow.%1").arg(getpid());
}

void KWinForegroundApplication::serviceChanged(bool present) {
  running_ = false;
  application_.reset();
  if (!present) return;
  // What a process of the same number left behind calls into nothing.
  callBus(bus_, scripting(), QStringLiteral("unloadScript"), {scriptName()}, context_.get(),
          [this](const QDBusMessage& reply) {
            if (reply.type() == QDBusMessage::ReplyMessage) loadScript();
          });
}

bool KWinForegroundApplication::writeScript() const {
  std::string text(scriptText);
  replace(text, "%SERVICE%", bus_.baseService().toStdString());
  replace(text, "%PATH%", receiverPath.toStdString());
  return writeFileAtomically(scriptPath(), text, {.synchronize = false}).has_value();
}

void KWinForegroundApplication::loadScript() {
  if (!writeScript()) return;
  const QVariantList arguments{QString::fromStdString(scriptPath().string()), scriptName()};
  callBus(bus_, scripting(), QStringLiteral("loadScript"), arguments, context_.get(),
          [this](const QDBusMessage& loaded) {
            if (loaded.type() != QDBusMessage::ReplyMessage || loaded.arguments().value(0).toInt() < 0) return;
            callBus(bus_, scripting(), QStringLiteral("start"), {}, context_.get(),
                    [this](const QDBusMessage& started) { running_ = started.type() == QDBusMessage::ReplyMessage; });
          });
}

void KWinForegroundApplication::activated(const QString& resourceClass, const QString& desktopFile) {
  // The desktop file may come with its folder and ending.
  QString entry = desktopFile.section(QLatin1Char('/'), -1);
  if (entry.endsWith(QStringLiteral(".desktop"))) entry.chop(8);
  const std::string windowClass = (entry.isEmpty() ? resourceClass : entry).toStdString();
  application_ = entries_.applicationFor(windowClass, resourceClass.toStdString());
  if (!application_ || application_ == announced_) return;  // between two windows it calls with none
  announced_ = application_;
  if (handler_) handler_(*announced_);
}

std::optional<RunningApplication> KWinForegroundApplication::frontmost() {
  return running_ ? application_ : std::nullopt;
}

}  // namespace quillmeter
