#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <QWidget>

#include "screentime/model/ActivitySummary.h"

class QFontMetricsF;

namespace quillmeter {

// One continuous use on the strip; `application` counts in the strip's tints.
struct TimelineBlock {
  Date start;
  Date end;
  std::size_t application = 0;
  friend bool operator==(const TimelineBlock&, const TimelineBlock&) = default;
};

// A mark below the strip, at a fraction of its width.
struct TimelineTick {
  double position = 0;
  QString label;
  friend bool operator==(const TimelineTick&, const TimelineTick&) = default;
};

// The uses of one interval side by side on a band, each in its application's colour. Where several fall on one pixel,
// the longest shows. The use under the pointer, or the one reached with the arrow keys, is framed and told to the
// owner. Repaints only when what it shows changes.
class TimelineStrip : public QWidget {
 public:
  explicit TimelineStrip(QWidget* parent = nullptr);
  // `tints` by application; blocks in time order.
  void setUse(const DateInterval& interval, std::vector<TimelineBlock> blocks, std::vector<std::string> tints);
  void setTicks(std::vector<TimelineTick> ticks);
  // Null when none is highlighted any more.
  void setDescribed(std::function<void(const TimelineBlock*)> described) { described_ = std::move(described); }
  const std::vector<TimelineBlock>& blocks() const { return blocks_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  QRectF band() const;
  double positionOf(Date date) const;
  std::optional<std::size_t> blockAt(double x) const;
  void highlight(std::optional<std::size_t> index);
  void paintBlocks(QPainter& painter) const;
  std::size_t tickStep(const QFontMetricsF& metrics) const;
  void paintTicks(QPainter& painter) const;

  DateInterval interval_;
  std::vector<TimelineBlock> blocks_;
  std::vector<std::string> tints_;
  std::vector<TimelineTick> ticks_;
  std::optional<std::size_t> highlighted_;
  std::function<void(const TimelineBlock*)> described_;
};

}  // namespace quillmeter
