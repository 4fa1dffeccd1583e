#pragma once

#include <span>
#include <string>
#include <vector>

#include <QWidget>

namespace quillmeter {

// A small line over its own faint area. Repaints only when the values change.
class Sparkline : public QWidget {
 public:
  explicit Sparkline(QWidget* parent = nullptr);
  // Oldest first, each 0 ... 1.
  void setValues(std::span<const double> values);
  void setTint(std::string hex);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // The rows of pixels that the values stand on.
  std::vector<int> rows() const;

  std::vector<double> values_;
  std::string tint_;
};

}  // namespace quillmeter
