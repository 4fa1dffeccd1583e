#pragma once

class QPainter;
class QStyleOption;
class QStyleOptionButton;

namespace quillmeter {

// Push buttons, tool buttons, check boxes and radio buttons.
namespace ButtonPainting {

constexpr int controlHeight = 32;
constexpr int indicatorSize = 18;

void bevel(const QStyleOptionButton& option, QPainter& painter);
void label(const QStyleOptionButton& option, QPainter& painter);
// The frame of a button that the keyboard is on.
void focus(const QStyleOptionButton& option, QPainter& painter);
// Shown only under the pointer, while pressed or while it is on.
void toolPanel(const QStyleOption& option, QPainter& painter);
void checkMark(const QStyleOption& option, QPainter& painter);  // the bare tick, as large as the rectangle
void checkBox(const QStyleOption& option, QPainter& painter);
void radioButton(const QStyleOption& option, QPainter& painter);

}  // namespace ButtonPainting

}  // namespace quillmeter
