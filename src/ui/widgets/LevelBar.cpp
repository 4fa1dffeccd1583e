#include "ui/widgets/LevelBar.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QStyle>

#include "core/model/UnitInterval.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr int thickness = 6;
constexpr int usualWidth = 120;
constexpr int leastWidth = 24;

}  // namespace

LevelBar::LevelBar(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

int LevelBar::filledPixels() const {
  return fraction_ ? static_cast<int>(std::lround(*fraction_ * width() * devicePixelRatioF())) : -1;
}

void LevelBar::setFraction(std::optional<double> fraction) {
  if (fraction) fraction = clampToUnit(*fraction);
  if (fraction == fraction_) return;
  const int before = filledPixels();
  fraction_ = fraction;
  if (filledPixels() != before) update();
  WidgetAccessibility::valueChanged(*this);
}

void LevelBar::setTint(std::string hex) {
  if (hex == tint_) return;
  tint_ = std::move(hex);
  update();
}

QSize LevelBar::sizeHint() const {
  return {usualWidth, thickness};
}

QSize LevelBar::minimumSizeHint() const {
  return {leastWidth, thickness};
}

void LevelBar::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  const QRectF bar(0, (height() - thickness) / 2.0, width(), thickness);
  constexpr double radius = thickness / 2.0;
  Shapes::panel(painter, bar, radius, colors.track);
  const int pixels = filledPixels();
  if (pixels <= 0) return;
  // A little is shown as a dot, not as a splinter.
  QRectF filled = bar;
  filled.setWidth(std::max<double>(thickness, pixels / devicePixelRatioF()));
  if (layoutDirection() == Qt::RightToLeft) filled.moveRight(bar.right());
  Shapes::panel(painter, filled, radius, colors.tint(tint_));
}

}  // namespace quillmeter
