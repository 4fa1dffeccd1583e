#include "ui/dashboard/CardMotion.h"

#include <cmath>
#include <utility>

#include <QWidget>

#include "ui/theme/Theme.h"

namespace quillmeter {

namespace {

constexpr int usualMilliseconds = 180;

int between(int start, int end, double progress) {
  return start + static_cast<int>(std::lround((end - start) * progress));
}

}  // namespace

CardMotion::CardMotion() {
  animation_.setStartValue(0.0);
  animation_.setEndValue(1.0);
  animation_.setEasingCurve(QEasingCurve::OutCubic);
  QObject::connect(&animation_, &QVariantAnimation::valueChanged, &animation_,
                   [this](const QVariant& value) { show(value.toDouble()); });
}

void CardMotion::move(std::vector<Target> targets, bool isAnimated) {
  animation_.stop();
  legs_.clear();
  for (Target& target : targets) {
    const QRect start = target.widget->geometry();
    if (start != target.place) legs_.push_back({std::move(target), start});
  }
  if (legs_.empty()) return;
  const int milliseconds = isAnimated ? motionMilliseconds(usualMilliseconds) : 0;
  if (milliseconds <= 0) {
    show(1);
    return;
  }
  animation_.setDuration(milliseconds);
  animation_.start();
}

void CardMotion::show(double progress) {
  for (const Leg& leg : legs_) {
    if (!leg.target.widget) continue;
    const QRect& end = leg.target.place;
    // The new extent at once: a card lays its content out only once.
    leg.target.widget->setGeometry(between(leg.start.x(), end.x(), progress), between(leg.start.y(), end.y(), progress),
                                   end.width(), end.height());
  }
}

}  // namespace quillmeter
