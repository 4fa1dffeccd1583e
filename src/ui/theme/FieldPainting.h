#pragma once

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOption;
class QStyleOptionComboBox;
class QStyleOptionSpinBox;

namespace quillmeter {

// What text or a choice is entered in: line edits, combo boxes, spin boxes.
namespace FieldPainting {

constexpr int horizontalPadding = 10;
constexpr int arrowWidth = 28;

// The field itself; its frame shows the focus.
void frame(const QStyleOption& option, QPainter& painter, bool focused);
void comboBox(const QStyleOptionComboBox& option, QPainter& painter);
void comboBoxLabel(const QStyleOptionComboBox& option, QPainter& painter);
void spinBox(const QStyleOptionSpinBox& option, QPainter& painter);
QRect comboBoxPart(const QStyleOptionComboBox& option, QStyle::SubControl part);
QRect spinBoxPart(const QStyleOptionSpinBox& option, QStyle::SubControl part);

}  // namespace FieldPainting

}  // namespace quillmeter
