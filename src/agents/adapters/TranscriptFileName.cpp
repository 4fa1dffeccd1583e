#include "agents/adapters/TranscriptFileName.h"

#include <algorithm>

namespace quillmeter {

namespace {

constexpr std::string_view plainSuffix = ".jsonl";
constexpr std::string_view compressedSuffix = ".zst";

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f');
}

bool removeSuffix(std::string_view& text, std::string_view suffix) {
  if (!text.ends_with(suffix)) return false;
  text.remove_suffix(suffix.size());
  return true;
}

// Each 'd' of the pattern stands for a digit, every other character for itself.
bool removePattern(std::string_view& text, std::string_view pattern) {
  if (text.size() < pattern.size()) return false;
  const auto tail = text.substr(text.size() - pattern.size());
  const bool fits = std::equal(tail.begin(), tail.end(), pattern.begin(),
                               [](char c, char p) { return p == 'd' ? isDigit(c) : c == p; });
  if (fits) text.remove_suffix(pattern.size());
  return fits;
}

// Takes ".reset.<time>" or ".deleted.<time>", perhaps with ".<32 hexadecimal digits>", off the end.
bool removeRotation(std::string_view& name) {
  constexpr std::size_t suffixDigits = 32;
  if (name.size() > suffixDigits && name[name.size() - suffixDigits - 1] == '.') {
    const auto digits = name.substr(name.size() - suffixDigits);
    if (std::all_of(digits.begin(), digits.end(), isHexDigit)) name.remove_suffix(suffixDigits + 1);
  }
  const bool dated = removePattern(name, "dddd-dd-ddTdd-dd-dd.dddZ") || removePattern(name, "dddd-dd-ddTdd-dd-ddZ");
  return dated && (removeSuffix(name, ".reset.") || removeSuffix(name, ".deleted."));
}

}  // namespace

std::optional<TranscriptFileName> TranscriptFileName::from(std::string_view name) {
  if (name.find(".trajectory") != std::string_view::npos || name.find(".checkpoint.") != std::string_view::npos) {
    return std::nullopt;
  }
  TranscriptFileName result;
  result.compressed = removeSuffix(name, compressedSuffix);
  if (!removeSuffix(name, plainSuffix) && !(removeRotation(name) && removeSuffix(name, plainSuffix)))
    return std::nullopt;
  if (name.empty()) return std::nullopt;
  result.sessionID = name;
  return result;
}

bool isColdFileName(std::string_view name) {
  constexpr std::size_t digestDigits = 64;
  return removeSuffix(name, ".jsonl.zst") && name.size() == digestDigits &&
         std::all_of(name.begin(), name.end(), isHexDigit);
}

}  // namespace quillmeter
