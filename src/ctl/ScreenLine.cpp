#include "ctl/ScreenLine.h"

#include <algorithm>

#include "ctl/DisplayWidth.h"

namespace quillmeter::ctl {

ScreenLine& ScreenLine::add(std::string_view text, TextStyle style) {
  const std::string fitting = truncatedToWidth(text, columns_ - width_);
  width_ += displayWidth(fitting);
  text_ += console_.styled(fitting, style);
  return *this;
}

ScreenLine& ScreenLine::moveTo(int column) {
  const int blanks = std::max(column - width_, width_ > 0 ? 1 : 0);
  return add(std::string(static_cast<std::size_t>(std::clamp(blanks, 0, columns_ - width_)), ' '));
}

ScreenLine& ScreenLine::addAtRight(std::string_view text, TextStyle style) {
  const int column = columns_ - displayWidth(text);
  if (column <= width_) return *this;
  return moveTo(column).add(text, style);
}

}  // namespace quillmeter::ctl
