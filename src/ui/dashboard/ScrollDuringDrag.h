#pragma once

#include <functional>
#include <memory>

#include <QPoint>

#include "platform/TimerFactory.h"

class QScrollArea;

namespace quillmeter {

// Scrolls a page while something is dragged near its upper or lower edge, the faster the nearer. Runs only there.
class ScrollDuringDrag {
 public:
  // `scrolled` is called after each movement of the page.
  ScrollDuringDrag(QScrollArea& area, TimerFactory& timers, std::function<void()> scrolled);
  // The pointer, in global coordinates.
  void follow(QPoint pointer);

 private:
  void step();

  QScrollArea& area_;
  TimerFactory& timers_;
  const std::function<void()> scrolled_;
  int speed_ = 0;  // pixels a step
  std::unique_ptr<Timer> timer_;
};

}  // namespace quillmeter
