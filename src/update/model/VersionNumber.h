#pragma once

#include <compare>
#include <optional>
#include <string_view>

namespace quillmeter {

// Compares dot-separated integers piece by piece; the shorter one is filled up with zeros, empty pieces are dropped.
// Absent when one of the two has no pieces or a piece that is no 64-bit integer.
std::optional<std::strong_ordering> compareVersions(std::string_view a, std::string_view b);

}  // namespace quillmeter
