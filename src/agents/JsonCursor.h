#pragma once

#include <bitset>
#include <cstddef>
#include <string_view>

namespace quillmeter {

// What stands at the cursor, told by its first byte.
enum class JsonKind { object, array, string, number, literal, none };

// Walks one JSON text in place and stops at the few fields that are wanted: nothing is built, nothing is indexed, so a
// line of 16 MB costs no more memory than one of 100 bytes. Everything that is passed over is checked against the
// grammar all the same: a torn or garbled line is refused as a whole, however much of it still looks right. Containers
// may nest maximumDepth levels.
//
// LineScanner::paddingBytes bytes behind the text must be readable. Views that it hands out point into the text. After
// a fault every operation answers "nothing there".
class JsonCursor {
 public:
  static constexpr std::size_t maximumDepth = 1024;

  explicit JsonCursor(std::string_view text);

  JsonKind kind() const;
  // Steps into the object at the cursor; false (and nothing consumed) when something else stands there.
  bool enterObject();
  // The next key of the object entered last, without quotes and with its escapes as written; false behind the last one,
  // which leaves the object. Its value has to be consumed by one of the operations below before the next call.
  bool nextKey(std::string_view& key);
  // The raw text of the string, number or literal at the cursor, strings without quotes; empty for a container, which
  // is skipped.
  std::string_view scalar();
  void skip();
  // Nothing but white space is left, and there was no fault. UTF-8 is not checked here.
  bool atEnd();
  bool failed() const { return failed_; }

 private:
  void skipSpace();
  bool skipString();
  bool skipNumber();
  bool skipLiteral();
  bool skipDigits();
  bool skipScalar();
  bool closeContainers(std::size_t floor);
  bool push(bool isObject);
  bool fail() {
    failed_ = true;
    return false;
  }

  const char* position_;
  const char* end_;
  std::size_t depth_ = 0;
  std::bitset<maximumDepth> isObject_;  // by depth
  bool first_ = false;                  // no key of the current object was read yet
  bool failed_ = false;
};

// Whether the bytes are UTF-8, which a JSON text has to be.
bool isUtf8(std::string_view bytes);
}  // namespace quillmeter
