#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include <QRectF>

class QFont;

namespace quillmeter {

struct ChartBar;

// Where the parts of a bar chart stand: a line of text above, the plot, and the labels below where there are any.
// Computed from the widget's size; a value.
class BarChartLayout {
 public:
  BarChartLayout(const QRectF& area, std::span<const ChartBar> bars, const QFont& labelFont);

  const QRectF& headline() const { return headline_; }
  const QRectF& plot() const { return plot_; }
  // The value at the upper scale line: round, and at least the largest of the bars.
  double top() const { return top_; }
  double yOf(double value) const;
  // The whole column of a bar, from the plot's top to its base line.
  QRectF slot(std::size_t index) const;
  QRectF bar(std::size_t index, double value) const;
  QRectF label(std::size_t index) const;
  std::optional<int> barAt(const QPointF& position) const;
  // Those whose labels are shown: every so many, so that none touches the next.
  std::vector<std::size_t> labelled() const { return labelled_; }

 private:
  void thinOut(std::span<const ChartBar> bars, const QFont& font);

  std::size_t count_;
  QRectF headline_;
  QRectF plot_;
  QRectF labels_;
  double top_ = 0;
  std::vector<std::size_t> labelled_;
  double widestLabel_ = 0;
};

// The smallest round figure (1, 1.5, 2, 3, 4, 5, 6, 8 times a power of ten) that is not below the value; 0 for none.
double roundedUp(double value);

}  // namespace quillmeter
