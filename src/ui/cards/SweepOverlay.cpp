#include "ui/cards/SweepOverlay.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include "ui/theme/Theme.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {

namespace {

constexpr int sweepMilliseconds = 1'400;
constexpr int fadeMilliseconds = 260;
constexpr double bandShare = 0.55;    // of the width
constexpr double slant = 0.16;        // horizontal shift over the height
constexpr double pushedShare = 0.12;  // how far a speck is taken along, of the width

// Where specks lie, as shares of width and height, and their diameter.
struct Speck {
  double x;
  double y;
  double size;
};
constexpr std::array<Speck, 18> specks = {{{0.06, 0.62, 2.6},
                                           {0.11, 0.30, 1.8},
                                           {0.17, 0.80, 2.2},
                                           {0.22, 0.48, 3.0},
                                           {0.28, 0.22, 2.0},
                                           {0.33, 0.70, 2.8},
                                           {0.39, 0.40, 1.8},
                                           {0.44, 0.86, 2.4},
                                           {0.49, 0.18, 2.6},
                                           {0.54, 0.58, 2.0},
                                           {0.60, 0.34, 3.0},
                                           {0.65, 0.76, 1.8},
                                           {0.70, 0.52, 2.4},
                                           {0.76, 0.24, 2.2},
                                           {0.81, 0.68, 2.8},
                                           {0.86, 0.42, 2.0},
                                           {0.91, 0.84, 2.4},
                                           {0.95, 0.56, 1.8}}};

QColor withAlpha(QColor color, double alpha) {
  color.setAlphaF(static_cast<float>(std::clamp(alpha, 0.0, 1.0)));
  return color;
}

}  // namespace

SweepOverlay::SweepOverlay(std::string tint, double radius, QWidget* covered)
    : QWidget(covered), tint_(std::move(tint)), radius_(radius) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
  hide();
  covered->installEventFilter(this);
  sweep_.setStartValue(0.0);
  sweep_.setEndValue(1.0);
  sweep_.setLoopCount(-1);
  sweep_.setEasingCurve(QEasingCurve::InOutSine);
  fade_.setStartValue(1.0);
  fade_.setEndValue(0.0);
  connect(&sweep_, &QVariantAnimation::valueChanged, this, [this] { update(); });
  connect(&fade_, &QVariantAnimation::valueChanged, this, [this] { update(); });
  connect(&fade_, &QVariantAnimation::finished, this, [this] {
    if (!isActive_) hide();
  });
}

void SweepOverlay::setActive(bool isActive) {
  if (isActive == isActive_) return;
  isActive_ = isActive;
  fade_.stop();
  if (isActive) {
    setGeometry(parentWidget()->rect());
    raise();
    show();
    return;
  }
  fade_.setDuration(motionMilliseconds(fadeMilliseconds));
  if (isVisible() && fade_.duration() > 0) {
    fade_.start();
  } else {
    hide();
  }
}

void SweepOverlay::showEvent(QShowEvent*) {
  sweep_.setDuration(motionMilliseconds(sweepMilliseconds));
  if (isActive_ && sweep_.duration() > 0) sweep_.start();
}

void SweepOverlay::hideEvent(QHideEvent*) {
  sweep_.stop();
  fade_.stop();
  if (!isActive_) hide();  // it was fading with the widget that is now hidden: it must not come back with it
}

bool SweepOverlay::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
  return QWidget::eventFilter(watched, event);
}

void SweepOverlay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath surface;
  surface.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius_ - 1, radius_ - 1);
  painter.setClipPath(surface);
  const QColor color = ThemeColors::of(palette()).tint(tint_);
  const double strength = fade_.state() == QAbstractAnimation::Running ? fade_.currentValue().toDouble() : 1.0;
  painter.fillRect(rect(), withAlpha(color, 0.05 * strength));
  if (!isMoving()) return;
  const double position = sweep_.currentValue().toDouble();
  paintSpecks(painter, color, position, strength);
  paintBand(painter, color, position, strength);
}

// The band's bright front runs from left of the surface to right of it.
void SweepOverlay::paintBand(QPainter& painter, const QColor& color, double position, double strength) const {
  const double band = width() * bandShare;
  const double shift = height() * slant;
  const double front = -shift + position * (width() + band + 2 * shift);
  // Across the slanted front, so that the light fades behind it evenly.
  const double length = std::hypot(height(), 2 * shift);
  const QPointF across(height() / length, 2 * shift / length);
  const QPointF middle(front, height() / 2.0);
  QLinearGradient gradient(middle - across * (band * height() / length), middle);
  gradient.setColorAt(0, withAlpha(color, 0));
  gradient.setColorAt(0.7, withAlpha(color, 0.13 * strength));
  gradient.setColorAt(0.97, withAlpha(color, 0.30 * strength));
  gradient.setColorAt(1, withAlpha(color, 0));
  QPainterPath path;
  path.moveTo(front - band + shift, 0);
  path.lineTo(front + shift, 0);
  path.lineTo(front - shift, height());
  path.lineTo(front - band - shift, height());
  path.closeSubpath();
  painter.fillPath(path, gradient);
  QLinearGradient edge(QPointF(0, 0), QPointF(0, height()));
  edge.setColorAt(0, withAlpha(color, 0));
  edge.setColorAt(0.5, withAlpha(color, 0.75 * strength));
  edge.setColorAt(1, withAlpha(color, 0));
  painter.setPen(QPen(QBrush(edge), 1.6));
  painter.drawLine(QPointF(front + shift, 0), QPointF(front - shift, height()));
}

// Specks appear at the start of a pass; the front takes each one along for a while, where it fades.
void SweepOverlay::paintSpecks(QPainter& painter, const QColor& color, double position, double strength) const {
  const double shift = height() * slant;
  const double front = -shift + position * (width() * (1 + bandShare) + 2 * shift);
  const double arrival = std::min(position / 0.08, 1.0);
  painter.setPen(Qt::NoPen);
  for (const Speck& speck : specks) {
    const double rest = speck.x * width();
    const double frontHere = front + shift * (1 - 2 * speck.y);
    const double pushed = std::clamp((frontHere - rest) / (width() * pushedShare), 0.0, 1.0);
    if (pushed >= 1) continue;
    const double x = std::max(rest, frontHere);
    const double lift = pushed * pushed * 6;
    painter.setBrush(withAlpha(color, 0.5 * arrival * (1 - pushed) * strength));
    painter.drawEllipse(QPointF(x, speck.y * height() - lift), speck.size / 2, speck.size / 2);
  }
}

}  // namespace quillmeter
