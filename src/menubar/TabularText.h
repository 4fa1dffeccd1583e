#pragma once

#include <QtCore/QRectF>
#include <QtCore/QString>

class QFont;
class QPainter;

namespace quillmeter {

// Text whose digits all take the width of the widest one, so that a figure that changes does not move what follows.
namespace TabularText {

double width(const QString& text, const QFont& font);
// Of a line, in whole points: the toolkit rounds, which may cost the lowest row of a "g".
int height(const QFont& font);
// One line with the painter's font and pen; elided at the end when it is too long for the rectangle.
void draw(QPainter& painter, const QRectF& rectangle, Qt::Alignment alignment, const QString& text);
// The whole of it, with its baseline beginning at the point.
void draw(QPainter& painter, const QPointF& baseline, const QString& text);

}  // namespace TabularText

}  // namespace quillmeter
