#pragma once

#include <QFont>

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

}  // namespace quillmeter
