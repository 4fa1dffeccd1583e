#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmeter {

// RFC 4648, the standard alphabet with padding.
std::string encodeBase64(std::string_view bytes);
// Strict: no white space, padded, no stray bits in the last group. Absent for anything else.
std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace quillmeter
