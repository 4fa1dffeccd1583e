#pragma once

#include <string_view>

#include <QString>

#include "ui/theme/QtText.h"

namespace quillmeter {

// A word or sentence that other places have in the middle of a line, standing for itself.
inline QString capitalizedText(std::string_view text) {
  QString shown = qtText(text);
  if (!shown.isEmpty()) shown[0] = shown[0].toUpper();
  return shown;
}

}  // namespace quillmeter
