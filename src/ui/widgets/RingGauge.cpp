#include "ui/widgets/RingGauge.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <QPainter>

#include "core/model/UnitInterval.h"
#include "menubar/TabularText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr double fullCircle = 360 * 16;  // the painter's unit of angles
constexpr int headingDiameter = 56;      // from here on the text in the middle is larger
constexpr int figureDiameter = 80;       // and from here on a figure

TextRole roleFor(int diameter) {
  if (diameter >= figureDiameter) return TextRole::figure;
  return diameter >= headingDiameter ? TextRole::heading : TextRole::caption;
}

}  // namespace

RingGauge::RingGauge(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

double RingGauge::thickness() const {
  return std::clamp(diameter_ * 0.1, 3.0, 10.0);
}

// Half a pixel of the device along the ring: less is not seen.
int RingGauge::stepCount() const {
  return static_cast<int>(std::ceil((diameter_ - thickness()) * std::numbers::pi * devicePixelRatioF() * 2));
}

int RingGauge::filledSteps() const {
  return fraction_ ? static_cast<int>(std::lround(*fraction_ * stepCount())) : -1;
}

void RingGauge::setFraction(std::optional<double> fraction) {
  if (fraction) fraction = clampToUnit(*fraction);
  if (fraction == fraction_) return;
  const int before = filledSteps();
  fraction_ = fraction;
  if (filledSteps() != before) update();
  WidgetAccessibility::valueChanged(*this);
}

void RingGauge::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleDescription(text);
  update();
}

void RingGauge::setTint(std::string hex) {
  if (hex == tint_) return;
  tint_ = std::move(hex);
  update();
}

void RingGauge::setDiameter(int points) {
  if (points == diameter_) return;
  diameter_ = points;
  updateGeometry();
  update();
}

QSize RingGauge::sizeHint() const {
  return {diameter_, diameter_};
}

void RingGauge::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double width = thickness();
  const double radius = (diameter_ - width) / 2;
  const QRectF ring(QRectF(rect()).center() - QPointF(radius, radius), QSizeF(radius * 2, radius * 2));
  painter.setPen(QPen(colors.track, width));
  painter.drawEllipse(ring);
  const int filled = filledSteps();
  if (filled > 0) {
    painter.setPen(QPen(colors.tint(tint_), width, Qt::SolidLine, Qt::RoundCap));
    constexpr int top = 90 * 16;
    painter.drawArc(ring, top, -static_cast<int>(std::lround(fullCircle * filled / stepCount())));
  }
  if (text_.isEmpty()) return;
  // As large as the hole lets the text be.
  QFont font = fontFor(roleFor(diameter_));
  const double room = (radius - width) * 1.75;
  const double needed = TabularText::width(text_, font);
  if (needed > room) font.setPointSizeF(font.pointSizeF() * room / needed);
  painter.setFont(font);
  painter.setPen(fraction_ ? colors.text : colors.tertiaryText);
  TabularText::draw(painter, rect(), Qt::AlignCenter, text_);
}

}  // namespace quillmeter
