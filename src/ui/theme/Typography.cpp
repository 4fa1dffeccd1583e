#include "ui/theme/Typography.h"

#include <QApplication>

namespace quillmeter {
namespace {

struct Shape {
  double size;  // of the body text's
  QFont::Weight weight;
};

Shape shapeOf(TextRole role) {
  switch (role) {
    case TextRole::caption:
      return {0.87, QFont::Normal};
    case TextRole::body:
      return {1, QFont::Normal};
    case TextRole::strong:
      return {1, QFont::DemiBold};
    case TextRole::heading:
      return {1.08, QFont::DemiBold};
    case TextRole::title:
      return {1.6, QFont::DemiBold};
    case TextRole::figure:
      return {1.75, QFont::Normal};
    case TextRole::largeFigure:
      return {2.6, QFont::Light};
  }
  return {1, QFont::Normal};
}

}  // namespace

QFont fontFor(TextRole role) {
  const Shape shape = shapeOf(role);
  QFont font = QApplication::font();
  if (font.pointSizeF() > 0)
    font.setPointSizeF(font.pointSizeF() * shape.size);
  else
    font.setPixelSize(qRound(font.pixelSize() * shape.size));
  font.setWeight(shape.weight);
  return font;
}

}  // namespace quillmeter
