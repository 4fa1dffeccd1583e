#include "ui/widgets/BarChartLayout.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>

#include "menubar/TabularText.h"
#include "ui/widgets/BarChart.h"

namespace quillmeter {
namespace {

constexpr double headlineGap = 6;
constexpr double labelGap = 6;
constexpr double barShare = 0.66;  // of a bar's column
constexpr double widestBar = 28;
constexpr double leastVisible = 2;  // height of a value that is not 0
constexpr double labelDistance = 8;

}  // namespace

double roundedUp(double value) {
  if (!(value > 0) || !std::isfinite(value)) return 0;
  const double power = std::pow(10.0, std::floor(std::log10(value)));
  for (const double step : {1.0, 1.5, 2.0, 3.0, 4.0, 5.0, 6.0, 8.0}) {
    if (value <= step * power) return step * power;
  }
  return 10 * power;
}

BarChartLayout::BarChartLayout(const QRectF& area, std::span<const ChartBar> bars, const QFont& labelFont)
    : count_(bars.size()) {
  const double line = QFontMetricsF(labelFont).height();
  const bool hasLabels =
      std::any_of(bars.begin(), bars.end(), [](const ChartBar& bar) { return !bar.label.isEmpty(); });
  headline_ = QRectF(area.left(), area.top(), area.width(), line);
  plot_ = area.adjusted(0, line + headlineGap, 0, hasLabels ? -(line + labelGap) : 0);
  labels_ = QRectF(area.left(), area.bottom() - line, area.width(), line);
  double largest = 0;
  for (const ChartBar& bar : bars) largest = std::max(largest, bar.value);
  top_ = roundedUp(largest);
  if (hasLabels) thinOut(bars, labelFont);
}

void BarChartLayout::thinOut(std::span<const ChartBar> bars, const QFont& font) {
  for (const ChartBar& bar : bars) widestLabel_ = std::max(widestLabel_, TabularText::width(bar.label, font));
  const double column = plot_.width() / static_cast<double>(count_);
  const auto stride = static_cast<std::size_t>(std::max(1.0, std::ceil((widestLabel_ + labelDistance) / column)));
  double end = -labelDistance;
  for (std::size_t index = 0; index < count_; index += stride) {
    // An outermost label that had to move inwards may be too close to its neighbour.
    const QRectF place = label(index);
    if (bars[index].label.isEmpty() || place.left() < end + labelDistance / 2) continue;
    labelled_.push_back(index);
    end = place.right();
  }
}

double BarChartLayout::yOf(double value) const {
  return top_ > 0 ? plot_.bottom() - plot_.height() * std::min(value / top_, 1.0) : plot_.bottom();
}

QRectF BarChartLayout::slot(std::size_t index) const {
  const double column = plot_.width() / static_cast<double>(std::max<std::size_t>(1, count_));
  return {plot_.left() + column * static_cast<double>(index), plot_.top(), column, plot_.height()};
}

QRectF BarChartLayout::bar(std::size_t index, double value) const {
  const QRectF column = slot(index);
  const double width = std::min(column.width() * barShare, widestBar);
  const double height = value > 0 ? std::max(leastVisible, plot_.bottom() - yOf(value)) : 0;
  return {column.center().x() - width / 2, plot_.bottom() - height, width, height};
}

QRectF BarChartLayout::label(std::size_t index) const {
  const double center = slot(index).center().x();
  const double width = widestLabel_ + 2;
  // The outermost labels stay inside.
  const double most = std::max(labels_.left(), labels_.right() - width);
  const double left = std::clamp(center - width / 2, labels_.left(), most);
  return {left, labels_.top(), width, labels_.height()};
}

std::optional<int> BarChartLayout::barAt(const QPointF& position) const {
  if (count_ == 0 || position.x() < plot_.left() || position.x() >= plot_.right()) return std::nullopt;
  const double column = plot_.width() / static_cast<double>(count_);
  return std::clamp(static_cast<int>((position.x() - plot_.left()) / column), 0, static_cast<int>(count_) - 1);
}

}  // namespace quillmeter
