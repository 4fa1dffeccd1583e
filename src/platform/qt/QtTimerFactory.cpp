#include "platform/qt/QtTimerFactory.h"

#include <QObject>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace quillmeter {
namespace {

constexpr double coarseShare = 0.05;                // what Qt allows itself with a coarse timer
constexpr double fullSecondToleranceSeconds = 0.5;  // and, each way, with a very coarse one

int milliseconds(double seconds) {
  constexpr double most = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::round(seconds * 1000), 0.0, most));
}

Qt::TimerType typeFor(double interval, double tolerance) {
  // A very coarse timer rounds its interval to whole seconds, which would change the period of others.
  const bool isWholeSeconds = interval >= 1 && interval == std::floor(interval);
  if (isWholeSeconds && tolerance >= fullSecondToleranceSeconds) return Qt::VeryCoarseTimer;
  return tolerance >= interval * coarseShare ? Qt::CoarseTimer : Qt::PreciseTimer;
}

class QtTimer final : public Timer {
 public:
  QtTimer(double seconds, Qt::TimerType type, bool single, std::function<void()> fire) : timer_(new QTimer) {
    timer_->setTimerType(type);
    timer_->setSingleShot(single);
    QObject::connect(timer_, &QTimer::timeout, timer_, [fire = std::move(fire), inCall = inCall_] {
      *inCall = true;
      fire();
      *inCall = false;
    });
    timer_->start(milliseconds(seconds));
  }
  // Its own call may end it: then the object, and with it the function that runs, lives until the event loop turns.
  ~QtTimer() override {
    timer_->stop();
    if (*inCall_) {
      timer_->deleteLater();
    } else {
      delete timer_;
    }
  }
  QtTimer(const QtTimer&) = delete;
  QtTimer& operator=(const QtTimer&) = delete;

 private:
  QTimer* timer_;
  std::shared_ptr<bool> inCall_ = std::make_shared<bool>(false);
};

}  // namespace

std::unique_ptr<Timer> QtTimerFactory::repeating(double interval, double tolerance, std::function<void()> fire) {
  return std::make_unique<QtTimer>(interval, typeFor(interval, tolerance), false, std::move(fire));
}

std::unique_ptr<Timer> QtTimerFactory::once(double delay, std::function<void()> fire) {
  return std::make_unique<QtTimer>(delay, Qt::PreciseTimer, true, std::move(fire));
}

}  // namespace quillmeter
