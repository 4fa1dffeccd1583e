#include "core/model/ByteCountFormatter.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quillmeter {
namespace {

constexpr std::array<std::string_view, 7> unitNames = {"bytes", "KB", "MB", "GB", "TB", "PB", "EB"};
constexpr std::array<std::uint64_t, 7> precisionScale = {1,   1,   10, 100,
                                                         100, 100, 100};  // ten to the number of fraction digits

__extension__ typedef unsigned __int128 Wide;  // 2^63 * 100 does not fit 64 bits

// value * scale / divisor, halves to even.
std::uint64_t scaledQuotient(std::uint64_t value, std::uint64_t scale, std::uint64_t divisor) {
  const Wide scaled = static_cast<Wide>(value) * scale;
  const auto quotient = static_cast<std::uint64_t>(scaled / divisor);
  const Wide twiceRest = scaled % divisor * 2;
  return twiceRest > divisor || (twiceRest == divisor && quotient % 2 == 1) ? quotient + 1 : quotient;
}

void appendGrouped(std::string& text, std::uint64_t figure, const std::string& separator) {
  const std::string digits = std::to_string(figure);
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) text += separator;
    text += digits[i];
  }
}

}  // namespace

ByteCountFormatter::ByteCountFormatter(std::uint64_t step, ByteUnit smallest, ByteUnit largest,
                                       LocaleConventions locale)
    : step_(step), smallest_(smallest), largest_(largest), locale_(std::move(locale)) {}

ByteCountFormatter ByteCountFormatter::file(LocaleConventions locale) {
  return {1000, ByteUnit::bytes, ByteUnit::exabytes, std::move(locale)};
}

ByteCountFormatter ByteCountFormatter::memory(LocaleConventions locale) {
  return {1024, ByteUnit::bytes, ByteUnit::exabytes, std::move(locale)};
}

ByteCountFormatter ByteCountFormatter::transferRate(LocaleConventions locale) {
  return {1024, ByteUnit::kilobytes, ByteUnit::gigabytes, std::move(locale)};
}

std::string ByteCountFormatter::string(std::int64_t byteCount) const {
  if (byteCount == 0) return "Zero KB";
  const auto magnitude = byteCount < 0 ? -static_cast<std::uint64_t>(byteCount) : static_cast<std::uint64_t>(byteCount);
  auto unit = static_cast<std::size_t>(smallest_);
  const auto largest = static_cast<std::size_t>(largest_);
  std::uint64_t divisor = 1;
  for (std::size_t i = 0; i < unit; ++i) divisor *= step_;
  std::uint64_t figure = scaledQuotient(magnitude, precisionScale[unit], divisor);
  while (unit < largest && figure >= step_ * precisionScale[unit]) {
    ++unit;
    divisor *= step_;
    figure = scaledQuotient(magnitude, precisionScale[unit], divisor);
  }

  std::string text;
  if (byteCount < 0) text += '-';
  appendGrouped(text, figure / precisionScale[unit], locale_.groupingSeparator);
  std::string fraction;
  for (std::uint64_t scale = precisionScale[unit] / 10, rest = figure % precisionScale[unit]; rest > 0;
       rest %= scale, scale /= 10) {
    fraction += static_cast<char>('0' + rest / scale);
  }
  if (!fraction.empty()) text += locale_.decimalSeparator + fraction;
  text += ' ';
  text += unit == 0 && magnitude == 1 ? std::string_view("byte") : unitNames[unit];
  return text;
}

}  // namespace quillmeter
