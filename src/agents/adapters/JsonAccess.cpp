#include "agents/adapters/JsonAccess.h"

#include <simdjson.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <type_traits>

namespace quillmeter {

namespace {

namespace dom = simdjson::dom;

static_assert(std::is_trivially_copyable_v<dom::object>);
static_assert(JsonParser::paddingBytes >= simdjson::SIMDJSON_PADDING);

constexpr std::size_t ordinaryTextBytes = 1'048'576;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The value of the four hexadecimal digits at `position`, or -1.
int hexadecimalUnit(std::string_view text, std::size_t position) {
  if (position + 4 > text.size()) return -1;
  int unit = 0;
  for (const char c : text.substr(position, 4)) {
    const int digit = isDigit(c)               ? c - '0'
                      : (c >= 'a' && c <= 'f') ? c - 'a' + 10
                      : (c >= 'A' && c <= 'F') ? c - 'A' + 10
                                               : -1;
    if (digit < 0) return -1;
    unit = unit * 16 + digit;
  }
  return unit;
}

bool isHighSurrogate(int unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(int unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// `position` is at a backslash; gives the position behind the escape (behind both halves of a pair). Half a pair, as
// JavaScript writes it when a text was cut inside one, becomes the replacement character.
std::size_t repairEscape(std::string& text, std::size_t position) {
  if (position + 1 >= text.size() || text[position + 1] != 'u') return position + 2;
  const int unit = hexadecimalUnit(text, position + 2);
  if (!isHighSurrogate(unit) && !isLowSurrogate(unit)) return position + 2;
  const bool pair = isHighSurrogate(unit) && text.compare(position + 6, 2, "\\u") == 0 &&
                    isLowSurrogate(hexadecimalUnit(text, position + 8));
  if (pair) return position + 12;
  text.replace(position + 2, 4, "FFFD");
  return position + 6;
}

// `position` is at a digit outside of texts; gives the position behind the number. An integer too long for 64 bits gets
// the same magnitude as a floating number of the same length.
std::size_t repairNumber(std::string& text, std::size_t position) {
  constexpr std::size_t safeDigits = 19;
  std::size_t end = position;
  while (end < text.size() && isDigit(text[end])) ++end;
  const bool floating = end < text.size() && (text[end] == '.' || text[end] == 'e' || text[end] == 'E');
  if (!floating && end - position >= safeDigits) text.replace(end - 2, 2, "e2");
  while (end < text.size() && (isDigit(text[end]) || std::strchr(".eE+-", text[end]) != nullptr)) ++end;
  return end;
}

// Rewrites, length kept, what the parser refuses although the grammar allows it.
void repair(std::string& text) {
  bool insideText = false;
  for (std::size_t i = 0; i < text.size();) {
    if (insideText && text[i] == '\\') {
      i = repairEscape(text, i);
    } else if (!insideText && isDigit(text[i])) {
      i = repairNumber(text, i);
    } else {
      if (text[i] == '"') insideText = !insideText;
      ++i;
    }
  }
}

template <typename Handle>
dom::object viewOf(const Handle& handle) {
  dom::object object;
  static_assert(sizeof(object) == sizeof(handle));
  std::memcpy(&object, handle.data(), sizeof(object));
  return object;
}

}  // namespace

bool JsonObject::contains(std::string_view key) const {
  return viewOf(handle_).at_key(key).error() == simdjson::SUCCESS;
}

UsageValue JsonObject::value(std::string_view key) const {
  dom::element element;
  if (viewOf(handle_).at_key(key).get(element) != simdjson::SUCCESS) return {};
  switch (element.type()) {
    case dom::element_type::INT64:
      return static_cast<std::int64_t>(element.get_int64().value_unsafe());
    case dom::element_type::UINT64:
      return static_cast<std::uint64_t>(element.get_uint64().value_unsafe());
    case dom::element_type::DOUBLE:
      return element.get_double().value_unsafe();
    case dom::element_type::STRING:
      return element.get_string().value_unsafe();
    case dom::element_type::BOOL:
      return element.get_bool().value_unsafe();
    default:
      return {};
  }
}

std::optional<std::string_view> JsonObject::string(std::string_view key) const {
  std::string_view text;
  if (viewOf(handle_).at_key(key).get(text) != simdjson::SUCCESS) return std::nullopt;
  return text;
}

std::optional<JsonObject> JsonObject::object(std::string_view key) const {
  dom::object object;
  if (viewOf(handle_).at_key(key).get(object) != simdjson::SUCCESS) return std::nullopt;
  Handle handle;
  std::memcpy(handle.data(), &object, sizeof(object));
  return JsonObject(handle);
}

struct JsonParser::State {
  std::unique_ptr<dom::parser> parser = std::make_unique<dom::parser>();
  std::string copy;  // of a text without padding, or under repair

  // Buffers fit for `bytes`, neither reallocated for every slightly longer text nor kept at the size of one giant.
  bool prepare(std::size_t bytes) {
    const std::size_t wanted = std::bit_ceil(std::max(bytes, std::size_t{65'536}));
    if (parser->capacity() > ordinaryTextBytes && wanted <= ordinaryTextBytes) parser = std::make_unique<dom::parser>();
    if (copy.capacity() > 2 * ordinaryTextBytes && bytes <= ordinaryTextBytes) std::string().swap(copy);
    return parser->capacity() >= bytes || parser->allocate(wanted) == simdjson::SUCCESS;
  }

  simdjson::error_code read(const char* bytes, std::size_t size, dom::object& object) {
    return parser->parse(bytes, size, false).get(object);
  }

  simdjson::error_code readRepaired(std::string_view text, dom::object& object) {
    if (text.data() != copy.data()) copy.assign(text);
    copy.resize(text.size());
    repair(copy);
    copy.resize(text.size() + paddingBytes);
    return read(copy.data(), text.size(), object);
  }
};

JsonParser::JsonParser() : state_(std::make_unique<State>()) {}
JsonParser::~JsonParser() = default;

std::optional<JsonObject> JsonParser::parse(std::string_view text) {
  if (!state_->prepare(text.size())) return std::nullopt;
  state_->copy.assign(text);
  state_->copy.resize(text.size() + paddingBytes);
  return parsePadded({state_->copy.data(), text.size()});
}

std::optional<JsonObject> JsonParser::parsePadded(std::string_view text) {
  if (!state_->prepare(text.size())) return std::nullopt;
  dom::object object;
  auto error = state_->read(text.data(), text.size(), object);
  if (error == simdjson::STRING_ERROR || error == simdjson::NUMBER_ERROR) error = state_->readRepaired(text, object);
  if (error != simdjson::SUCCESS) return std::nullopt;
  JsonObject::Handle handle;
  std::memcpy(handle.data(), &object, sizeof(object));
  return JsonObject(handle);
}

}  // namespace quillmeter
