#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ctl/Console.h"

namespace quillmeter::ctl {

// One line of a live view in the making: pieces of text at columns, never wider than the screen. Colours are the
// console's to allow.
class ScreenLine {
 public:
  ScreenLine(const Console& console, int columns) : console_(console), columns_(columns) {}

  ScreenLine& add(std::string_view text, TextStyle style = TextStyle::plain);
  // Blanks up to `column`, at least one behind text that reaches further.
  ScreenLine& moveTo(int column);
  // `text` so that it ends at the right edge; left out when there is no room for it and a blank before.
  ScreenLine& addAtRight(std::string_view text, TextStyle style = TextStyle::plain);

  int width() const { return width_; }
  std::string take() { return std::move(text_); }

 private:
  const Console& console_;
  int columns_;
  int width_ = 0;
  std::string text_;
};

}  // namespace quillmeter::ctl
