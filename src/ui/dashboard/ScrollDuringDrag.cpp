#include "ui/dashboard/ScrollDuringDrag.h"

#include <algorithm>
#include <utility>

#include <QScrollArea>
#include <QScrollBar>

namespace quillmeter {

namespace {

constexpr int zone = 56;          // from the edge, in pixels
constexpr int slowestFactor = 4;  // pixels in the zone for each pixel of a step
constexpr double stepSeconds = 0.016;

}  // namespace

ScrollDuringDrag::ScrollDuringDrag(QScrollArea& area, TimerFactory& timers, std::function<void()> scrolled)
    : area_(area), timers_(timers), scrolled_(std::move(scrolled)) {}

void ScrollDuringDrag::follow(QPoint pointer) {
  const QWidget& viewport = *area_.viewport();
  const int y = viewport.mapFromGlobal(pointer).y();
  const int below = y - (viewport.height() - zone);
  const int above = zone - y;
  speed_ = below > 0 ? std::min(below, zone) / slowestFactor : above > 0 ? -std::min(above, zone) / slowestFactor : 0;
  if (speed_ == 0) {
    timer_.reset();
  } else if (!timer_) {
    timer_ = timers_.repeating(stepSeconds, 0, [this] { step(); });
  }
}

void ScrollDuringDrag::step() {
  QScrollBar& bar = *area_.verticalScrollBar();
  const int before = bar.value();
  bar.setValue(before + speed_);
  if (bar.value() != before) scrolled_();
}

}  // namespace quillmeter
