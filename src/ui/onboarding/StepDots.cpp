#include "ui/onboarding/StepDots.h"

#include <string>

#include <QPainter>

#include "base/L10n.h"
#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {
namespace {

constexpr int diameter = 8;
constexpr int currentWidth = 22;
constexpr int gap = 8;

}  // namespace

StepDots::StepDots(int count, QWidget* parent) : QWidget(parent), count_(count) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  retranslate();
}

void StepDots::setCurrent(int index) {
  if (index == current_) return;
  current_ = index;
  retranslate();
  update();
}

void StepDots::retranslate() {
  setAccessibleName(
      qtText(L10n::format(QM_TR("第 %d 步，共 %d 步"), {std::to_string(current_ + 1), std::to_string(count_)})));
}

QSize StepDots::sizeHint() const {
  return {(count_ - 1) * (diameter + gap) + currentWidth, diameter};
}

void StepDots::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  double x = 0;
  for (int index = 0; index < count_; ++index) {
    const double width = index == current_ ? currentWidth : diameter;
    painter.setBrush(index == current_ ? colors.accent : colors.track);
    painter.drawRoundedRect(QRectF(x, 0, width, diameter), diameter / 2.0, diameter / 2.0);
    x += width + gap;
  }
}

}  // namespace quillmeter
