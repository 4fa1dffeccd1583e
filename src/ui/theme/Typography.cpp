#include "ui/theme/Typography.h"

#include <algorithm>

#include <QApplication>
#include <QScreen>
#include <QWidget>

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

int lengthForText(int usual) {
  constexpr double largestUsualPoints = 11;
  constexpr double pointsInPixel = 0.75;
  const QFont font = QApplication::font();
  const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * pointsInPixel;
  return qRound(usual * std::max(1.0, points / largestUsualPoints));
}

void keepRoomForText(QWidget& window, const QSize& usualLeast) {
  const QSize least(lengthForText(usualLeast.width()), lengthForText(usualLeast.height()));
  window.setMinimumSize(least.boundedTo(window.screen()->availableSize()));
}

}  // namespace quillmeter
