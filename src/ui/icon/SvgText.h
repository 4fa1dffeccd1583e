#pragma once

#include <string>

class QColor;
class QPainterPath;

namespace quillmeter {

// Writes filled shapes as a scalable picture.
class SvgText {
 public:
  // A square canvas of so many units.
  explicit SvgText(double edge);
  // Filled with one colour, or from the canvas's top to its bottom with two, and grown by `outline`.
  void add(const QPainterPath& path, const QColor& top, const QColor& bottom, double outline = 0);
  std::string text() const;

 private:
  double edge_;
  int gradients_ = 0;
  std::string definitions_;
  std::string shapes_;
};

}  // namespace quillmeter
