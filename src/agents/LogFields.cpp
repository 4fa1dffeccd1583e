#include "agents/LogFields.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "agents/JsonString.h"
#include "base/Iso8601.h"

namespace quillmeter {

namespace {

using Limits = std::numeric_limits<std::int64_t>;

// All of `text` as a decimal integer with an optional sign.
std::optional<std::int64_t> integerFrom(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) return text.starts_with('-') ? Limits::min() : Limits::max();
  return value;
}

// All of `text` as a decimal floating-point number with an optional sign.
std::optional<double> doubleFrom(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    const std::size_t exponent = text.find_first_of("eE");
    const bool isTiny = exponent == std::string_view::npos ? text.find_first_of("123456789") > text.find('.')
                                                           : text.substr(exponent + 1).starts_with('-');
    const double magnitude = isTiny ? 0 : std::numeric_limits<double>::infinity();
    return text.starts_with('-') ? -magnitude : magnitude;
  }
  return value;
}

std::int64_t truncated(double value) {
  constexpr double bound = 9223372036854775808.0;  // 2^63
  if (value >= bound) return Limits::max();
  if (value < -bound) return Limits::min();
  return static_cast<std::int64_t>(value);
}

}  // namespace

std::optional<std::int64_t> readInteger(JsonCursor& cursor) {
  const JsonKind kind = cursor.kind();
  const std::string_view raw = cursor.scalar();
  if (kind == JsonKind::string) {
    std::string buffer;
    return integerFrom(unescapeJson(raw, buffer));
  }
  if (kind != JsonKind::number || raw.empty()) return std::nullopt;
  if (raw.find_first_of(".eE") == std::string_view::npos) return integerFrom(raw);
  const std::optional<double> value = doubleFrom(raw);
  return value ? std::optional(truncated(*value)) : std::nullopt;
}

std::optional<double> readDouble(JsonCursor& cursor) {
  const JsonKind kind = cursor.kind();
  const std::string_view raw = cursor.scalar();
  if (kind == JsonKind::number) return doubleFrom(raw);
  if (kind != JsonKind::string) return std::nullopt;
  std::string buffer;
  return doubleFrom(unescapeJson(raw, buffer));
}

std::optional<Date> readDate(JsonCursor& cursor) {
  std::string buffer;
  const std::optional<std::string_view> text = readString(cursor, buffer);
  return text ? parseIso8601(*text) : std::nullopt;
}

std::optional<std::string_view> readString(JsonCursor& cursor, std::string& buffer) {
  const bool isString = cursor.kind() == JsonKind::string;
  const std::string_view raw = cursor.scalar();
  if (!isString || cursor.failed()) return std::nullopt;
  return unescapeJson(raw, buffer);
}

}  // namespace quillmeter
