#include "platform/qt/QtEventLoop.h"

#include <QCoreApplication>

namespace quillmeter {
namespace {

// Qt warns on standard error about locales that are not UTF-8. Ours is decided by the program, not by the C library.
void swallow(QtMsgType, const QMessageLogContext&, const QString&) {}

std::unique_ptr<QCoreApplication> makeApplication() {
  static char name[] = "quillmeter";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  qputenv("QT_NO_GLIB", "1");
  const QtMessageHandler previous = qInstallMessageHandler(swallow);
  auto application = std::make_unique<QCoreApplication>(count, arguments);
  qInstallMessageHandler(previous);
  return application;
}

}  // namespace

QtEventLoop::QtEventLoop() : application_(makeApplication()) {}

QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::run() {
  if (!quitEarly_) QCoreApplication::exec();
  quitEarly_ = false;
}

// A loop that does not run yet would forget it.
void QtEventLoop::quit() {
  quitEarly_ = true;
  QCoreApplication::quit();
}

}  // namespace quillmeter
