#include "ui/widgets/Sparkline.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

#include "core/model/UnitInterval.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr double lineWidth = 1.6;
constexpr QSize usualSize(120, 36);
constexpr QSize leastSize(40, 24);
constexpr float areaOpacity = 0.14F;

}  // namespace

Sparkline::Sparkline(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

std::vector<int> Sparkline::rows() const {
  const double scale = devicePixelRatioF();
  const double room = (height() - lineWidth) * scale;
  std::vector<int> rows;
  rows.reserve(values_.size());
  for (const double value : values_) rows.push_back(static_cast<int>(std::lround((1 - value) * room)));
  return rows;
}

void Sparkline::setValues(std::span<const double> values) {
  if (std::equal(values.begin(), values.end(), values_.begin(), values_.end())) return;
  const std::vector<int> before = rows();
  values_.assign(values.begin(), values.end());
  for (double& value : values_) value = clampToUnit(value);
  if (rows() != before) update();
}

void Sparkline::setTint(std::string hex) {
  if (hex == tint_) return;
  tint_ = std::move(hex);
  update();
}

QSize Sparkline::sizeHint() const {
  return usualSize;
}

QSize Sparkline::minimumSizeHint() const {
  return leastSize;
}

void Sparkline::paintEvent(QPaintEvent*) {
  const std::vector<int> pixelRows = rows();
  if (pixelRows.size() < 2) return;
  const ThemeColors& colors = ThemeColors::of(palette());
  const QColor color = colors.tint(tint_);
  const double scale = devicePixelRatioF();
  constexpr double inset = lineWidth / 2;
  const double step = (width() - lineWidth) / static_cast<double>(pixelRows.size() - 1);
  QPolygonF line;
  line.reserve(static_cast<qsizetype>(pixelRows.size()) + 2);
  double x = inset;
  for (const int row : pixelRows) {
    line.append(QPointF(x, inset + row / scale));
    x += step;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPolygonF area = line;
  area << QPointF(line.last().x(), height()) << QPointF(inset, height());
  QColor faint = color;
  faint.setAlphaF(areaOpacity);
  painter.setPen(Qt::NoPen);
  painter.setBrush(faint);
  painter.drawPolygon(area);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(line);
}

}  // namespace quillmeter
