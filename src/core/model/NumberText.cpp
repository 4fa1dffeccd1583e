#include "core/model/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace quillmeter {
namespace {

// The longest finite double has 309 digits before the point; the shortest round trip of a tiny one 324 + 17 behind it.
constexpr std::size_t longestDecimalBytes = 384;

// Puts `separator` between groups of three of the digits in [first, last) of `text`.
void groupDigits(std::string& text, std::size_t first, std::size_t last, const std::string& separator) {
  for (std::size_t position = last; position > first + 3;) {
    position -= 3;
    text.insert(position, separator);
  }
}

}  // namespace

std::string defaultDecimalText(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  std::array<char, longestDecimalBytes> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed).ptr;
  std::string text(buffer.data(), end);
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

std::string fixedDecimalText(double value, int fractionDigits) {
  std::array<char, longestDecimalBytes> buffer;
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, fractionDigits);
  return {buffer.data(), result.ptr};
}

std::optional<std::string> localizedDecimalText(double value, int fractionDigits, const LocaleConventions& locale) {
  if (!std::isfinite(value)) return std::nullopt;
  std::string text = fixedDecimalText(value, fractionDigits);
  const std::size_t firstDigit = text.starts_with('-') ? 1 : 0;
  const std::size_t point = std::min(text.find('.'), text.size());
  if (point < text.size()) text.replace(point, 1, locale.decimalSeparator);
  if (!locale.groupingSeparator.empty()) groupDigits(text, firstDigit, point, locale.groupingSeparator);
  return text;
}

std::string percentageText(double percent, const LocaleConventions& locale) {
  const double limited = std::min(percent, 100.0);
  auto text = localizedDecimalText(limited, 2, locale);
  return (text ? *std::move(text) : fixedDecimalText(limited, 2)) + " %";
}

}  // namespace quillmeter
