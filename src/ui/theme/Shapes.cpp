#include "ui/theme/Shapes.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QWidget>

#include "ui/theme/ThemeColors.h"

namespace quillmeter::Shapes {
namespace {

// Device pixels to a point. Widgets are not rotated.
double scaleOf(const QPainter& painter) {
  return painter.deviceTransform().m11();
}

}  // namespace

QRectF onPixels(const QPainter& painter, const QRectF& rectangle) {
  const QTransform& transform = painter.deviceTransform();
  const QRectF device = transform.mapRect(rectangle);
  const QPointF first(std::round(device.left()), std::round(device.top()));
  const QPointF last(std::round(device.right()), std::round(device.bottom()));
  return transform.inverted().mapRect(QRectF(first, last));
}

double hairline(const QPainter& painter) {
  const double scale = scaleOf(painter);
  return std::max(1.0, std::floor(scale)) / scale;
}

void panel(QPainter& painter, const QRectF& rectangle, double radius, const QColor& fill, const QColor& border) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  QRectF shape = onPixels(painter, rectangle);
  painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
  painter.setPen(Qt::NoPen);
  if (border.isValid()) {
    const double width = hairline(painter);
    shape.adjust(width / 2, width / 2, -width / 2, -width / 2);
    radius -= width / 2;
    painter.setPen(QPen(border, width));
  }
  painter.drawRoundedRect(shape, radius, radius);
  painter.restore();
}

void focusFrame(QPainter& painter, const QRectF& rectangle, double radius, const ThemeColors& colors) {
  constexpr double width = 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colors.focus, width));
  const QRectF shape = onPixels(painter, rectangle).adjusted(width / 2, width / 2, -width / 2, -width / 2);
  painter.drawRoundedRect(shape, radius - width / 2, radius - width / 2);
  painter.restore();
}

void chevron(QPainter& painter, const QPointF& center, const QColor& color, double degrees) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(center);
  painter.rotate(degrees);
  painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  const QPointF points[] = {{-3.5, -1.75}, {0, 1.75}, {3.5, -1.75}};
  painter.drawPolyline(points, 3);
  painter.restore();
}

bool showsFocus(const QWidget& widget) {
  return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

}  // namespace quillmeter::Shapes
