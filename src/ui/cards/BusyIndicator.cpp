#include "ui/cards/BusyIndicator.h"

#include <QPainter>

#include "ui/theme/Theme.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {

namespace {

constexpr int edge = 14;
constexpr double lineWidth = 1.8;
constexpr int turnMilliseconds = 1'000;
constexpr int arcDegrees = 270;

}  // namespace

BusyIndicator::BusyIndicator(TimerFactory& timers, QWidget* parent) : QWidget(parent), timers_(timers) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  turn_.setStartValue(0.0);
  turn_.setEndValue(360.0);
  turn_.setLoopCount(-1);
  connect(&turn_, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

void BusyIndicator::setBusy(bool isBusy) {
  if (isBusy == isBusy_) return;
  isBusy_ = isBusy;
  if (!isBusy) {
    delay_.reset();
    setShown(false);
    return;
  }
  delay_ = timers_.once(delaySeconds, [this] {
    const std::unique_ptr<Timer> ended = std::move(delay_);
    setShown(true);
  });
}

void BusyIndicator::setDescription(const QString& description) {
  description_ = description;
  if (!isShown_) return;
  setAccessibleName(description_);
  setToolTip(description_);
}

void BusyIndicator::setShown(bool isShown) {
  if (isShown == isShown_) return;
  isShown_ = isShown;
  setAccessibleName(isShown ? description_ : QString());
  setToolTip(isShown ? description_ : QString());
  turn();
  update();
}

void BusyIndicator::turn() {
  turn_.stop();
  turn_.setDuration(motionMilliseconds(turnMilliseconds));
  if (isShown_ && isVisible() && turn_.duration() > 0) turn_.start();
}

void BusyIndicator::showEvent(QShowEvent*) {
  turn();
}

void BusyIndicator::hideEvent(QHideEvent*) {
  turn_.stop();
}

QSize BusyIndicator::sizeHint() const {
  return {edge, edge};
}

void BusyIndicator::paintEvent(QPaintEvent*) {
  if (!isShown_) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ThemeColors::of(palette()).secondaryText, lineWidth, Qt::SolidLine, Qt::RoundCap));
  const QRectF circle = QRectF(rect()).adjusted(lineWidth, lineWidth, -lineWidth, -lineWidth);
  const int start = -static_cast<int>(turn_.currentValue().toDouble() * 16);
  painter.drawArc(circle, start, -arcDegrees * 16);
}

}  // namespace quillmeter
