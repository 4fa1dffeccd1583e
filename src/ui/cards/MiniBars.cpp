#include "ui/cards/MiniBars.h"

#include <algorithm>
#include <utility>

#include <QPainter>

#include "ui/theme/ThemeColors.h"

namespace quillmeter {

namespace {

constexpr double emptyHeight = 2;  // of a bar without usage
constexpr double widestBar = 12;
constexpr float usualAlpha = 0.5F;

}  // namespace

MiniBars::MiniBars(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void MiniBars::setValues(std::vector<double> values, std::optional<std::size_t> current) {
  if (values == values_ && current == current_) return;
  values_ = std::move(values);
  current_ = current;
  update();
}

void MiniBars::setTint(std::string hex) {
  if (hex == tint_) return;
  tint_ = std::move(hex);
  update();
}

QSize MiniBars::sizeHint() const {
  return {120, 30};
}

QSize MiniBars::minimumSizeHint() const {
  return {72, 24};
}

void MiniBars::paintEvent(QPaintEvent*) {
  if (values_.empty()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const ThemeColors& colors = ThemeColors::of(palette());
  const QColor full = colors.tint(tint_);
  QColor usual = full;
  usual.setAlphaF(usualAlpha);
  const double most = *std::max_element(values_.begin(), values_.end());
  const double slot = width() / static_cast<double>(values_.size());
  const double bar = std::min(slot * 0.7, widestBar);
  for (std::size_t index = 0; index < values_.size(); ++index) {
    const double share = most > 0 ? values_[index] / most : 0;
    const double barHeight = std::max(share * height(), emptyHeight);
    const double x = static_cast<double>(index) * slot + (slot - bar) / 2;
    painter.setBrush(index == current_ ? full : share > 0 ? usual : colors.track);
    const double radius = std::min(bar / 2, 2.0);
    painter.drawRoundedRect(QRectF(x, height() - barHeight, bar, barHeight), radius, radius);
  }
}

}  // namespace quillmeter
