#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <QWidget>

namespace quillmeter {

struct ChartBar {
  double value = 0;     // not negative
  QString label;        // below the bar; empty for none
  QString description;  // what hovering or reaching it by key says: "14:00 · 12.3K"
  bool isCurrent = false;
  friend bool operator==(const ChartBar&, const ChartBar&) = default;
};

// Bars side by side over a base line, with two faint lines for scale. The bar under the pointer, or the one reached
// with the arrow keys, is highlighted and described above the chart. Labels that would run into each other are thinned
// out. Its accessible description names the highlighted bar.
class BarChart : public QWidget {
 public:
  explicit BarChart(QWidget* parent = nullptr);
  void setBars(std::vector<ChartBar> bars);
  const std::vector<ChartBar>& bars() const { return bars_; }
  void setTint(std::string hex);
  // Text of a value for the scale's lines; none are labelled without it.
  void setScaleText(std::function<QString(double)> format);
  // Shown in the middle while all values are 0.
  void setEmptyText(const QString& text);
  // A bar was clicked or chosen with Return.
  void setChosen(std::function<void(int index)> chosen);
  std::optional<int> highlighted() const { return highlighted_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  class Painting;
  void highlight(std::optional<int> index);
  bool isEmpty() const;

  std::vector<ChartBar> bars_;
  std::string tint_;
  QString emptyText_;
  std::function<QString(double)> scaleText_;
  std::function<void(int)> chosen_;
  std::optional<int> highlighted_;
};

}  // namespace quillmeter
