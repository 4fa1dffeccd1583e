#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace quillmeter {

inline QString qtText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace quillmeter
