#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>

namespace quillmeter {

// A scalar of a foreign record, from JSON or from a database column. Absent, null, an array and an object are
// monostate. A text is valid as long as the record that it came from.
using UsageValue = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string_view>;

// A view of one object inside the document that a JsonParser read last; invalid once that parser reads the next text.
// Cheap to copy. Of a key that occurs twice the first one counts.
class JsonObject {
 public:
  // Whether the key is there at all, with whatever value (null too).
  bool contains(std::string_view key) const;
  UsageValue value(std::string_view key) const;
  // Absent when the value is no text.
  std::optional<std::string_view> string(std::string_view key) const;
  // Absent when the value is no object.
  std::optional<JsonObject> object(std::string_view key) const;

 private:
  friend class JsonParser;
  static constexpr std::size_t handleBytes = 2 * sizeof(void*);
  using Handle = std::array<std::byte, handleBytes>;  // the parser library's own view, which stays out of headers
  explicit JsonObject(const Handle& handle) : handle_(handle) {}

  alignas(void*) Handle handle_;
};

// Reads one JSON text after another into the same buffers. Buffers that an oversized text has made grow are given back
// with the next ordinary one. The whole text is checked, so a torn line is never half counted; what the grammar allows
// but decoders dislike (half of a surrogate pair, integers beyond 64 bits) is read all the same. Not for several
// threads at once.
class JsonParser {
 public:
  // Bytes that have to be readable behind a text given to parsePadded().
  static constexpr std::size_t paddingBytes = 64;

  JsonParser();
  ~JsonParser();
  JsonParser(const JsonParser&) = delete;
  JsonParser& operator=(const JsonParser&) = delete;

  // The object at the top level; absent when the text is malformed or something else than an object.
  std::optional<JsonObject> parse(std::string_view text);
  // The same without a copy: paddingBytes behind the text may be read (they hold anything).
  std::optional<JsonObject> parsePadded(std::string_view text);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmeter
