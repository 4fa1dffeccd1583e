#include "agents/JsonCursor.h"

#include <simdjson.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace quillmeter {

namespace {

// Vectors as GCC and clang lower them for every processor.
constexpr std::ptrdiff_t vectorBytes = 16;
using ByteVector = unsigned char __attribute__((vector_size(vectorBytes)));
using WordVector = std::uint64_t __attribute__((vector_size(vectorBytes)));

// The next byte at or behind `position` that ends the plain run of a string: quote, backslash or control character;
// `end` or a place up to vectorBytes behind it when there is none.
const char* endOfPlainRun(const char* position, const char* end) {
  while (position < end) {
    ByteVector bytes;
    std::memcpy(&bytes, position, sizeof(bytes));
    const auto hits = (bytes == '"') | (bytes == '\\') | (bytes < 0x20);
    const auto words = std::bit_cast<WordVector>(hits);
    if ((words[0] | words[1]) != 0) {
      if constexpr (std::endian::native == std::endian::little) {
        const int bit = words[0] != 0 ? std::countr_zero(words[0]) : 64 + std::countr_zero(words[1]);
        return position + bit / 8;
      } else {
        const int bit = words[0] != 0 ? std::countl_zero(words[0]) : 64 + std::countl_zero(words[1]);
        return position + bit / 8;
      }
    }
    position += vectorBytes;
  }
  return position;
}

bool isSpace(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}
bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

int hexValue(char byte) {
  if (isDigit(byte)) return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

// The four digits at `digits`, which were checked before.
std::uint32_t hexUnit(const char* digits) {
  std::uint32_t unit = 0;
  for (int i = 0; i < 4; ++i) unit = unit * 16 + static_cast<std::uint32_t>(hexValue(digits[i]));
  return unit;
}

void appendUtf8(std::string& out, std::uint32_t point) {
  const auto put = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (point < 0x80) return put(point);
  if (point < 0x800) {
    put(0xC0 | point >> 6);
  } else if (point < 0x10000) {
    put(0xE0 | point >> 12);
    put(0x80 | (point >> 6 & 0x3F));
  } else {
    put(0xF0 | point >> 18);
    put(0x80 | (point >> 12 & 0x3F));
    put(0x80 | (point >> 6 & 0x3F));
  }
  put(0x80 | (point & 0x3F));
}

char simpleEscape(char byte) {
  switch (byte) {
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return byte;
  }
}

}  // namespace

JsonCursor::JsonCursor(std::string_view text) : position_(text.data()), end_(text.data() + text.size()) {
  skipSpace();
}

void JsonCursor::skipSpace() {
  while (position_ < end_ && isSpace(*position_)) ++position_;
}

JsonKind JsonCursor::kind() const {
  if (failed_ || position_ >= end_) return JsonKind::none;
  switch (*position_) {
    case '{':
      return JsonKind::object;
    case '[':
      return JsonKind::array;
    case '"':
      return JsonKind::string;
    case 't':
    case 'f':
    case 'n':
      return JsonKind::literal;
    default:
      return *position_ == '-' || isDigit(*position_) ? JsonKind::number : JsonKind::none;
  }
}

bool JsonCursor::push(bool isObject) {
  if (depth_ == maximumDepth) return fail();
  isObject_[depth_++] = isObject;
  return true;
}

bool JsonCursor::enterObject() {
  if (kind() != JsonKind::object || !push(true)) return false;
  ++position_;
  skipSpace();
  first_ = true;
  return true;
}

bool JsonCursor::nextKey(std::string_view& key) {
  if (failed_ || depth_ == 0) return false;
  if (position_ < end_ && *position_ == '}') {
    ++position_;
    --depth_;
    first_ = false;
    skipSpace();
    return false;
  }
  if (!first_) {
    if (position_ >= end_ || *position_ != ',') return fail();
    ++position_;
    skipSpace();
  }
  first_ = false;
  const char* start = position_;
  if (!skipString()) return false;
  key = std::string_view(start + 1, static_cast<std::size_t>(position_ - start) - 2);
  skipSpace();
  if (position_ >= end_ || *position_ != ':') return fail();
  ++position_;
  skipSpace();
  return true;
}

std::string_view JsonCursor::scalar() {
  const JsonKind what = kind();
  if (what == JsonKind::object || what == JsonKind::array) {
    skip();
    return {};
  }
  const char* start = position_;
  if (!skipScalar()) return {};
  const char* stop = position_;
  skipSpace();
  if (what != JsonKind::string) return {start, static_cast<std::size_t>(stop - start)};
  return {start + 1, static_cast<std::size_t>(stop - start) - 2};
}

bool JsonCursor::skipScalar() {
  switch (kind()) {
    case JsonKind::string:
      return skipString();
    case JsonKind::number:
      return skipNumber();
    case JsonKind::literal:
      return skipLiteral();
    default:
      return fail();
  }
}

bool JsonCursor::skipString() {
  if (position_ >= end_ || *position_ != '"') return fail();
  const char* at = position_ + 1;
  for (;;) {
    at = endOfPlainRun(at, end_);
    if (at >= end_) return fail();
    if (*at == '"') break;
    if (*at != '\\') return fail();  // a control character has to be escaped
    position_ = at + 1;
    if (!skipEscape()) return false;
    at = position_;
  }
  position_ = at + 1;
  return true;
}

// Behind a backslash.
bool JsonCursor::skipEscape() {
  if (position_ >= end_) return fail();
  switch (*position_++) {
    case '"':
    case '\\':
    case '/':
    case 'b':
    case 'f':
    case 'n':
    case 'r':
    case 't':
      return true;
    case 'u':
      break;
    default:
      return fail();
  }
  if (end_ - position_ < 4) return fail();
  for (int i = 0; i < 4; ++i) {
    if (hexValue(*position_++) < 0) return fail();
  }
  return true;
}

bool JsonCursor::skipDigits() {
  if (position_ >= end_ || !isDigit(*position_)) return fail();
  while (position_ < end_ && isDigit(*position_)) ++position_;
  return true;
}

bool JsonCursor::skipNumber() {
  if (*position_ == '-') ++position_;
  if (position_ < end_ && *position_ == '0') {
    ++position_;  // nothing may follow a leading zero but a fraction or an exponent
  } else if (!skipDigits()) {
    return false;
  }
  if (position_ < end_ && *position_ == '.') {
    ++position_;
    if (!skipDigits()) return false;
  }
  if (position_ < end_ && (*position_ == 'e' || *position_ == 'E')) {
    ++position_;
    if (position_ < end_ && (*position_ == '+' || *position_ == '-')) ++position_;
    if (!skipDigits()) return false;
  }
  return true;
}

bool JsonCursor::skipLiteral() {
  const std::string_view rest(position_, static_cast<std::size_t>(end_ - position_));
  for (const std::string_view literal :
       {std::string_view("true"), std::string_view("false"), std::string_view("null")}) {
    if (rest.starts_with(literal)) {
      position_ += literal.size();
      return true;
    }
  }
  return fail();
}

// Closes every container that ends here, down to `floor` levels, and steps over the comma behind the last one. Then a
// value follows (in an object: a key), unless depth_ is at the floor.
bool JsonCursor::closeContainers(std::size_t floor) {
  skipSpace();
  while (depth_ > floor) {
    if (position_ >= end_) return fail();
    const char byte = *position_;
    const bool inObject = isObject_[depth_ - 1];
    if (byte == ',') {
      ++position_;
      skipSpace();
      return true;
    }
    if (byte != (inObject ? '}' : ']')) return fail();
    ++position_;
    --depth_;
    skipSpace();
  }
  return true;
}

void JsonCursor::skip() {
  if (failed_) return;
  const std::size_t floor = depth_;
  bool expectKey = false;
  do {
    if (expectKey) {
      if (!skipString()) return;
      skipSpace();
      if (position_ >= end_ || *position_ != ':') return void(fail());
      ++position_;
      skipSpace();
    }
    const JsonKind what = kind();
    if (what == JsonKind::object || what == JsonKind::array) {
      const bool isObject = what == JsonKind::object;
      if (!push(isObject)) return;
      ++position_;
      skipSpace();
      if (position_ < end_ && *position_ != (isObject ? '}' : ']')) {
        expectKey = isObject;
        continue;
      }
    } else if (!skipScalar()) {
      return;
    }
    if (!closeContainers(floor)) return;
    expectKey = depth_ > floor && isObject_[depth_ - 1];
  } while (depth_ > floor);
}

bool JsonCursor::atEnd() {
  skipSpace();
  return !failed_ && depth_ == 0 && position_ == end_;
}

bool isUtf8(std::string_view bytes) {
  return simdjson::validate_utf8(bytes.data(), bytes.size());
}

std::string_view unescapeJson(std::string_view raw, std::string& buffer) {
  std::size_t escape = raw.find('\\');
  if (escape == std::string_view::npos) return raw;
  buffer.clear();
  std::size_t copied = 0;
  while (escape != std::string_view::npos) {
    buffer.append(raw, copied, escape - copied);
    const char kind = raw[escape + 1];
    copied = escape + 2;
    if (kind != 'u') {
      buffer.push_back(simpleEscape(kind));
    } else {
      std::uint32_t point = hexUnit(raw.data() + copied);
      copied += 4;
      if (point >= 0xD800 && point < 0xDC00 && raw.size() - copied >= 6 && raw[copied] == '\\' &&
          raw[copied + 1] == 'u') {
        const std::uint32_t low = hexUnit(raw.data() + copied + 2);
        if (low >= 0xDC00 && low < 0xE000) {
          point = 0x10000 + ((point - 0xD800) << 10) + (low - 0xDC00);
          copied += 6;
        }
      }
      appendUtf8(buffer, point);
    }
    escape = raw.find('\\', copied);
  }
  buffer.append(raw, copied);
  return buffer;
}

}  // namespace quillmeter
