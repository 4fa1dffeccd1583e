#pragma once

#include <QFont>

class QSize;
class QWidget;

namespace quillmeter {

// The sizes of text, all derived from the desktop's font.
enum class TextRole {
  caption,  // labels of axes, notes
  body,
  strong,      // body, heavier
  heading,     // title of a card or a group
  title,       // title of a page
  figure,      // the figure of a small card
  largeFigure  // the figure that a page is about
};

QFont fontFor(TextRole role);

// A length in logical pixels that suits text of a usual size, made longer where the user's text is larger. Take it anew
// when the font changes.
int lengthForText(int usual);

// Gives a window a least size that suits the text, as far as its screen is large enough. Again when the font changes.
void keepRoomForText(QWidget& window, const QSize& usualLeast);

}  // namespace quillmeter
