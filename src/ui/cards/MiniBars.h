#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <QWidget>

namespace quillmeter {

// A row of bars without labels, for a glance; the current one stands out. Repaints only when the values change.
class MiniBars : public QWidget {
 public:
  explicit MiniBars(QWidget* parent = nullptr);
  // Not negative; drawn relative to the greatest.
  void setValues(std::vector<double> values, std::optional<std::size_t> current);
  void setTint(std::string hex);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<double> values_;
  std::optional<std::size_t> current_;
  std::string tint_;
};

}  // namespace quillmeter
