#include "agents/JsonCursor.h"

#include <simdjson.h>

#include "agents/JsonString.h"

namespace quillmeter {

namespace {

bool isSpace(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}
bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
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
  const char* quote = endOfJsonString(position_ + 1, end_);
  if (quote == nullptr) return fail();
  position_ = quote + 1;
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

}  // namespace quillmeter
