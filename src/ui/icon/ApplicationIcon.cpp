#include "ui/icon/ApplicationIcon.h"

#include <cmath>
#include <numbers>
#include <vector>

#include <QColor>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "ui/icon/SvgText.h"

namespace quillmeter::ApplicationIcon {

namespace {

constexpr double edge = 512;
constexpr QPointF middle{edge / 2, edge / 2};

struct Layer {
  QPainterPath path;
  QColor top, bottom;
  double outline = 0;  // how far the filled shape reaches over its path
};

void arcTo(QPainterPath& path, QPointF centre, double radius, double start, double span) {
  path.arcTo(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), -start, -span);
}

QPointF onCircle(double radius, double degrees) {
  const double angle = degrees * std::numbers::pi / 180;
  return middle + radius * QPointF(std::cos(angle), std::sin(angle));
}

// A round-ended piece of a ring, from `start` clockwise, in degrees; 0 points to the right.
QPainterPath band(double radius, double width, double start, double span) {
  QPainterPath path;
  path.moveTo(onCircle(radius + width / 2, start));
  arcTo(path, middle, radius + width / 2, start, span);
  arcTo(path, onCircle(radius, start + span), width / 2, start + span, 180);
  arcTo(path, middle, radius - width / 2, start + span, -span);
  arcTo(path, onCircle(radius, start), width / 2, start + 180, 180);
  path.closeSubpath();
  return path;
}

// A feather that points to the upper right, its nib below the middle.
QPainterPath quill() {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  path.moveTo(406, 92);
  path.cubicTo(326, 100, 244, 158, 217, 262);
  path.cubicTo(214, 274, 211, 286, 208, 296);
  path.cubicTo(194, 317, 183, 336, 176, 357);
  path.cubicTo(173, 368, 188, 374, 193, 363);
  path.cubicTo(199, 343, 208, 323, 222, 301);
  path.cubicTo(231, 300, 241, 297, 250, 294);
  path.cubicTo(347, 262, 402, 176, 406, 92);
  path.closeSubpath();
  return path;
}

// The rib that parts the feather's two halves, thinner towards the tip.
QPainterPath rib() {
  QPainterPath path;
  path.moveTo(352, 136);
  path.cubicTo(290, 177, 247, 229, 217, 280);
  path.cubicTo(214, 285, 221, 289, 225, 285);
  path.cubicTo(256, 234, 297, 184, 356, 141);
  path.cubicTo(360, 138, 356, 133, 352, 136);
  path.closeSubpath();
  return path;
}

constexpr double gaugeStart = 135;
constexpr double gaugeSpan = 270;

QColor faint(QColor color) {
  color.setAlphaF(0.22F);
  return color;
}

std::vector<Layer> layers(bool detailed) {
  const QColor groundTop(0x2b, 0x33, 0x47);
  const QColor groundBottom(0x14, 0x18, 0x22);
  const QColor outer(0x3d, 0xd6, 0x8c);
  const QColor inner(0x5b, 0x9b, 0xff);
  const double width = detailed ? 36 : 50;
  const double outerRadius = detailed ? 166 : 164;
  const double innerRadius = detailed ? 110 : 92;
  QPainterPath ground;
  const double inset = detailed ? 24 : 10;
  ground.addRoundedRect(QRectF(inset, inset, edge - 2 * inset, edge - 2 * inset), 108, 108);
  const auto ring = [&](double radius, double share) { return band(radius, width, gaugeStart, gaugeSpan * share); };
  std::vector<Layer> all = {{ground, groundTop, groundBottom},
                            {ring(outerRadius, 1), faint(outer), faint(outer)},
                            {ring(outerRadius, 0.86), outer, QColor(0x25, 0xb0, 0x7c)},
                            {ring(innerRadius, 1), faint(inner), faint(inner)},
                            {ring(innerRadius, 0.45), inner, QColor(0x3f, 0x7d, 0xf2)},
                            {quill(), groundTop, groundBottom, detailed ? 15.0 : 24.0},
                            {quill(), QColor(0xff, 0xff, 0xff), QColor(0xe4, 0xea, 0xf6), detailed ? 0 : 4.0}};
  if (detailed) all.push_back({rib(), groundTop, groundBottom});
  return all;
}

QLinearGradient gradient(const Layer& layer) {
  QLinearGradient result(0, 24, 0, edge - 24);
  result.setColorAt(0, layer.top);
  result.setColorAt(1, layer.bottom);
  return result;
}

}  // namespace

QImage image(int pixels) {
  constexpr int leastDetailedPixels = 40;
  QImage result(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  result.fill(Qt::transparent);
  QPainter painter(&result);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(pixels / edge, pixels / edge);
  for (const Layer& layer : layers(pixels >= leastDetailedPixels)) {
    const QBrush brush = gradient(layer);
    const QPen outline(brush, 2 * layer.outline, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(layer.outline > 0 ? outline : QPen(Qt::NoPen));
    painter.setBrush(brush);
    painter.drawPath(layer.path);
  }
  return result;
}

QIcon icon() {
  QIcon result;
  for (const int pixels : {16, 24, 32, 48, 64, 128}) result.addPixmap(QPixmap::fromImage(image(pixels)));
  return result;
}

std::string svg() {
  SvgText text(edge);
  for (const Layer& layer : layers(true)) text.add(layer.path, layer.top, layer.bottom, layer.outline);
  return text.text();
}

// Filled shapes alone, apart from each other: those who recolour it know nothing else.
std::string symbolicSvg() {
  constexpr double symbolicEdge = 16;
  constexpr double width = 52;
  QTransform fit;
  fit.scale(symbolicEdge / 420, symbolicEdge / 420);
  fit.translate(-50, -44);
  const QColor color(0x2e, 0x34, 0x36);
  SvgText text(symbolicEdge);
  text.add(fit.map(band(176, width, gaugeStart, 137)), color, color);
  text.add(fit.map(band(176, width, -16, 61)), color, color);
  text.add(fit.map(quill()), color, color);
  return text.text();
}

}  // namespace quillmeter::ApplicationIcon
