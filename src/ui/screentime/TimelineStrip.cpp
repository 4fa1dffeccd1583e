#include "ui/screentime/TimelineStrip.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {
namespace {

constexpr int bandHeight = 26;
constexpr int tickHeight = 20;
constexpr int edge = 2;  // room for the frame of focus
constexpr double radius = 6;
constexpr std::int64_t joinedGapMicroseconds = 30 * Date::microsecondsPerSecond;

// A use that was left for a moment reads as one: that keeps the way with the arrow keys short.
std::vector<TimelineBlock> joined(std::vector<TimelineBlock> blocks) {
  std::vector<TimelineBlock> result;
  for (const TimelineBlock& block : blocks) {
    const bool continues = !result.empty() && result.back().application == block.application &&
                           block.start.microseconds - result.back().end.microseconds < joinedGapMicroseconds;
    if (continues) {
      result.back().end = block.end;
    } else {
      result.push_back(block);
    }
  }
  return result;
}

}  // namespace

TimelineStrip::TimelineStrip(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TimelineStrip::setUse(const DateInterval& interval, std::vector<TimelineBlock> blocks,
                           std::vector<std::string> tints) {
  blocks = joined(std::move(blocks));
  if (interval == interval_ && blocks == blocks_ && tints == tints_) return;
  const bool sameBlock = highlighted_ && *highlighted_ < blocks.size() && interval == interval_ &&
                         blocks[*highlighted_].start == blocks_[*highlighted_].start;
  interval_ = interval;
  blocks_ = std::move(blocks);
  tints_ = std::move(tints);
  if (!sameBlock) highlight(std::nullopt);
  update();
}

void TimelineStrip::setTicks(std::vector<TimelineTick> ticks) {
  if (ticks == ticks_) return;
  ticks_ = std::move(ticks);
  updateGeometry();
  update();
}

QSize TimelineStrip::sizeHint() const {
  return {320, bandHeight + 2 * edge + (ticks_.empty() ? 0 : lengthForText(tickHeight))};
}

QSize TimelineStrip::minimumSizeHint() const {
  return {120, sizeHint().height()};
}

QRectF TimelineStrip::band() const {
  return QRectF(edge, edge, width() - 2 * edge, bandHeight);
}

double TimelineStrip::positionOf(Date date) const {
  const double length = interval_.end.secondsSince(interval_.start);
  if (!(length > 0)) return band().left();
  return band().left() + band().width() * date.secondsSince(interval_.start) / length;
}

// The one that takes most of the pixel under `x`, else the nearest within reach of a finger.
std::optional<std::size_t> TimelineStrip::blockAt(double x) const {
  constexpr double reach = 3;
  std::optional<std::size_t> best;
  double bestOverlap = 0;
  for (std::size_t index = 0; index < blocks_.size(); ++index) {
    const double left = positionOf(blocks_[index].start);
    const double right = positionOf(blocks_[index].end);
    if (left > x + reach) break;
    const double overlap = std::min(right, x + reach) - std::max(left, x - reach);
    if (overlap > bestOverlap) {
      best = index;
      bestOverlap = overlap;
    }
  }
  return best;
}

void TimelineStrip::highlight(std::optional<std::size_t> index) {
  if (index == highlighted_) return;
  highlighted_ = index;
  if (described_) described_(index ? &blocks_[*index] : nullptr);
  update();
}

void TimelineStrip::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath outline;
  outline.addRoundedRect(band(), radius, radius);
  painter.fillPath(outline, colors.track);
  painter.save();
  painter.setClipPath(outline);
  paintBlocks(painter);
  painter.restore();
  if (highlighted_) {
    const TimelineBlock& block = blocks_[*highlighted_];
    QRectF frame(positionOf(block.start), band().top(), 0, band().height());
    frame.setRight(std::max(positionOf(block.end), frame.left() + 2));
    painter.setPen(QPen(colors.text, 1.5));
    painter.drawRoundedRect(frame.adjusted(-1, -0.5, 1, 0.5), 2, 2);
  }
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, band().adjusted(-edge, -edge, edge, edge), radius, colors);
  paintTicks(painter);
}

void TimelineStrip::paintBlocks(QPainter& painter) const {
  const ThemeColors& colors = ThemeColors::of(palette());
  const double scale = devicePixelRatioF();
  const auto columns = static_cast<std::size_t>(std::max(1.0, std::ceil(band().width() * scale)));
  constexpr std::size_t nobody = static_cast<std::size_t>(-1);
  std::vector<std::size_t> owner(columns, nobody);
  std::vector<double> covered(columns, 0.0);
  for (const TimelineBlock& block : blocks_) {
    const double left = (positionOf(block.start) - band().left()) * scale;
    const double right = (positionOf(block.end) - band().left()) * scale;
    for (auto column = static_cast<std::size_t>(std::max(0.0, left)); column < columns; ++column) {
      const auto x = static_cast<double>(column);
      const double overlap = std::min(right, x + 1) - std::max(left, x);
      if (overlap <= 0) break;
      if (overlap <= covered[column]) continue;
      covered[column] = overlap;
      owner[column] = block.application;
    }
  }
  for (std::size_t start = 0; start < columns;) {
    std::size_t end = start + 1;
    while (end < columns && owner[end] == owner[start]) ++end;
    if (owner[start] != nobody) {
      const double x = band().left() + static_cast<double>(start) / scale;
      painter.fillRect(QRectF(x, band().top(), static_cast<double>(end - start) / scale, band().height()),
                       colors.tint(tints_[owner[start]]));
    }
    start = end;
  }
}

// Each, each other or each fourth of them: as many as have room, evenly.
std::size_t TimelineStrip::tickStep(const QFontMetricsF& metrics) const {
  double widest = 0;
  for (const TimelineTick& tick : ticks_) widest = std::max(widest, metrics.horizontalAdvance(tick.label));
  const double distance = band().width() / static_cast<double>(std::max<std::size_t>(ticks_.size() - 1, 1));
  // The first and the last label are moved inwards by half of their width.
  const double needed = 1.5 * widest + metrics.averageCharWidth();
  std::size_t step = 1;
  while (step < ticks_.size() && distance * static_cast<double>(step) < needed) step *= 2;
  return step;
}

void TimelineStrip::paintTicks(QPainter& painter) const {
  if (ticks_.empty()) return;
  const ThemeColors& colors = ThemeColors::of(palette());
  painter.setFont(fontFor(TextRole::caption));
  const QFontMetricsF metrics(painter.font());
  const std::size_t step = tickStep(metrics);
  for (std::size_t index = 0; index < ticks_.size(); index += step) {
    const TimelineTick& tick = ticks_[index];
    const double width = metrics.horizontalAdvance(tick.label);
    const double at = band().left() + band().width() * tick.position;
    const double left = std::clamp(at - width / 2, 0.0, this->width() - width);
    painter.setPen(colors.secondaryText);
    painter.drawText(QRectF(left, band().bottom() + edge, width + 1, lengthForText(tickHeight)),
                     Qt::AlignLeft | Qt::AlignVCenter, tick.label);
  }
}

void TimelineStrip::mouseMoveEvent(QMouseEvent* event) {
  highlight(band().contains(event->position()) ? blockAt(event->position().x()) : std::nullopt);
}

void TimelineStrip::leaveEvent(QEvent*) {
  highlight(std::nullopt);
}

void TimelineStrip::keyPressEvent(QKeyEvent* event) {
  const bool forwards = event->key() == Qt::Key_Right;
  if (event->key() == Qt::Key_Escape && highlighted_) return highlight(std::nullopt);
  if ((!forwards && event->key() != Qt::Key_Left) || blocks_.empty()) return QWidget::keyPressEvent(event);
  const std::size_t last = blocks_.size() - 1;
  if (!highlighted_) return highlight(forwards ? 0 : last);
  if (forwards) return highlight(std::min(*highlighted_ + 1, last));
  highlight(*highlighted_ == 0 ? 0 : *highlighted_ - 1);
}

void TimelineStrip::focusInEvent(QFocusEvent*) {
  update();
}

void TimelineStrip::focusOutEvent(QFocusEvent*) {
  highlight(std::nullopt);
  update();
}

}  // namespace quillmeter
