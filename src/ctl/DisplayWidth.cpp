#include "ctl/DisplayWidth.h"

#include <algorithm>

#include <utf8proc.h>

namespace quillmeter::ctl {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr std::string_view ellipsis = "…";

struct Character {
  std::string_view bytes;
  utf8proc_int32_t codepoint = -1;  // -1: a byte that is no UTF-8
};

Character firstCharacter(std::string_view text) {
  utf8proc_int32_t codepoint = -1;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &codepoint);
  if (length <= 0) return {text.substr(0, 1), -1};
  return {text.substr(0, static_cast<std::size_t>(length)), codepoint};
}

int widthOf(const Character& character) {
  return character.codepoint < 0 ? 1 : utf8proc_charwidth(character.codepoint);
}

bool isUnprintable(utf8proc_int32_t codepoint) {
  if (codepoint < 0) return true;
  const bool overridesDirection =
      (codepoint >= 0x202A && codepoint <= 0x202E) || (codepoint >= 0x2066 && codepoint <= 0x2069);
  return overridesDirection || utf8proc_category(codepoint) == UTF8PROC_CATEGORY_CC;
}

}  // namespace

int displayWidth(std::string_view text) {
  int width = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    width += widthOf(character);
    text.remove_prefix(character.bytes.size());
  }
  return width;
}

std::string printable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    result += isUnprintable(character.codepoint) ? replacement : character.bytes;
    text.remove_prefix(character.bytes.size());
  }
  return result;
}

std::string truncatedToWidth(std::string_view text, int width) {
  if (displayWidth(text) <= width) return std::string(text);
  if (width < 1) return {};
  std::string result;
  int used = 1;  // the ellipsis
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    used += widthOf(character);
    if (used > width) break;
    result += character.bytes;
    text.remove_prefix(character.bytes.size());
  }
  return result.append(ellipsis);
}

std::string padded(std::string_view text, int width, Alignment alignment) {
  const std::string fill(static_cast<std::size_t>(std::max(0, width - displayWidth(text))), ' ');
  std::string result(text);
  return alignment == Alignment::left ? result + fill : fill + result;
}

}  // namespace quillmeter::ctl
