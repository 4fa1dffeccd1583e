#pragma once

#include <string>
#include <string_view>

namespace quillmeter {

// The closing quote of a JSON string whose text begins at `position`; null when `end` comes first or the text breaks
// the grammar (a bare control character, an unknown escape). UTF-8 is not checked. LineScanner::paddingBytes bytes
// behind `end` must be readable.
const char* endOfJsonString(const char* position, const char* end);
// The same for processors without AVX2.
const char* endOfJsonStringPortable(const char* position, const char* end);

// The text between the quotes with its escapes decoded into `buffer`; the text itself when it has none. The escapes
// must be sound. A lone surrogate becomes the three bytes that would encode it, so that different strings stay
// different.
std::string_view unescapeJson(std::string_view raw, std::string& buffer);

}  // namespace quillmeter
