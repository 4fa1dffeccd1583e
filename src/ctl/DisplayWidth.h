#pragma once

#include <string>
#include <string_view>

namespace quillmeter::ctl {

// Cells that UTF-8 text takes on a terminal: wide characters take two, combining ones none, ambiguous ones one. By the
// Unicode tables, whatever the process locale is. A byte that is no UTF-8 counts as one cell.
int displayWidth(std::string_view text);

// `text` fit for a terminal: control characters, text-direction overrides and bytes that are no UTF-8 become U+FFFD.
// Names of foreign files pass through it.
std::string printable(std::string_view text);

// The longest beginning of `text` that fits into `width` cells, ending in "…" when something was cut off.
std::string truncatedToWidth(std::string_view text, int width);

enum class Alignment { left, right };
// `text` filled up with spaces to `width` cells; as it is when it is wider.
std::string padded(std::string_view text, int width, Alignment alignment);

}  // namespace quillmeter::ctl
