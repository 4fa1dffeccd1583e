#include "ui/cards/LevelSteps.h"

#include <algorithm>

#include <QPainter>

#include "ui/theme/ThemeColors.h"

namespace quillmeter {

namespace {

constexpr int rowHeight = 6;
constexpr int risingHeight = 28;
constexpr int risingStepWidth = 6;
constexpr int gap = 4;

}  // namespace

LevelSteps::LevelSteps(int steps, Shape shape, QWidget* parent) : QWidget(parent), steps_(steps), shape_(shape) {
  setSizePolicy(shape == Shape::row ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LevelSteps::setLevel(std::optional<int> level, const QColor& color) {
  const int filled = std::clamp(level.value_or(0), 0, steps_);
  if (filled == filled_ && color == color_) return;
  filled_ = filled;
  color_ = color;
  update();
}

QSize LevelSteps::sizeHint() const {
  if (shape_ == Shape::row) return {steps_ * 28, rowHeight};
  return {steps_ * risingStepWidth + (steps_ - 1) * gap, risingHeight};
}

QSize LevelSteps::minimumSizeHint() const {
  return shape_ == Shape::row ? QSize(steps_ * 12, rowHeight) : sizeHint();
}

void LevelSteps::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QColor track = ThemeColors::of(palette()).track;
  const double width = (this->width() - (steps_ - 1) * gap) / static_cast<double>(steps_);
  for (int step = 0; step < steps_; ++step) {
    const double share = shape_ == Shape::row ? 1.0 : (step + 1.0) / steps_;
    const double stepHeight = std::max(height() * share, width);
    const double radius = std::min(width, shape_ == Shape::row ? height() * 1.0 : width) / 2;
    painter.setBrush(step < filled_ ? color_ : track);
    painter.drawRoundedRect(QRectF(step * (width + gap), height() - std::min(stepHeight, height() * 1.0), width,
                                   std::min(stepHeight, height() * 1.0)),
                            radius, radius);
  }
}

}  // namespace quillmeter
