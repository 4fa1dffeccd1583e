#pragma once

#include <QColor>
#include <QRectF>

class QPainter;
class QWidget;

namespace quillmeter {

struct ThemeColors;

// The few shapes that every surface and control is made of, laid on whole device pixels at any scale.
namespace Shapes {

constexpr double cardRadius = 14;
constexpr double controlRadius = 8;

// The rectangle with its edges on pixels of the device.
QRectF onPixels(const QPainter& painter, const QRectF& rectangle);
// The thinnest line that is sharp: one pixel, two on a finer device.
double hairline(const QPainter& painter);

// An invalid border draws none.
void panel(QPainter& painter, const QRectF& rectangle, double radius, const QColor& fill, const QColor& border = {});
// Inside the rectangle.
void focusFrame(QPainter& painter, const QRectF& rectangle, double radius, const ThemeColors& colors);
// Points down, or where it is turned to: degrees clockwise.
void chevron(QPainter& painter, const QPointF& center, const QColor& color, double degrees = 0);

// Whether the widget has the focus and the user moves it by key.
bool showsFocus(const QWidget& widget);

}  // namespace Shapes

}  // namespace quillmeter
