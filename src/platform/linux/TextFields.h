#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quillmeter {

// Reading the kernel's text tables: lines, words, numbers. Each takes what it found off the front of `text`.

// The next line without its line feed; the last one may lack it. Empty at the end, as is an empty line.
inline std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

// The next word between blanks; empty at the end of the line.
inline std::string_view takeWord(std::string_view& line) {
  const std::size_t start = line.find_first_not_of(" \t\r");
  if (start == std::string_view::npos) return line = {};
  line.remove_prefix(start);
  const std::string_view word = line.substr(0, line.find_first_of(" \t\r"));
  line.remove_prefix(word.size());
  return word;
}

// The whole text as a decimal number; absent when it is none or does not fit.
template <typename Number>
std::optional<Number> numberFrom(std::string_view text) {
  Number value{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace quillmeter
