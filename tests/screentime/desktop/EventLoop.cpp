#include "screentime/desktop/EventLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

namespace quillmeter::test {

bool waitUntil(const std::function<bool()>& condition, double deadlineSeconds) {
  constexpr int wakeUpMilliseconds = 10;
  QElapsedTimer elapsed;
  elapsed.start();
  QTimer wakeUp;
  wakeUp.start(wakeUpMilliseconds);
  while (!condition()) {
    if (static_cast<double>(elapsed.elapsed()) > deadlineSeconds * 1'000) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

}  // namespace quillmeter::test
