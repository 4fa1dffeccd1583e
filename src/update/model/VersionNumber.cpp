#include "update/model/VersionNumber.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmeter {

namespace {

std::optional<std::vector<std::int64_t>> piecesOf(std::string_view version) {
  std::vector<std::int64_t> pieces;
  while (!version.empty()) {
    const std::size_t dot = version.find('.');
    std::string_view piece = version.substr(0, dot);
    version = dot == std::string_view::npos ? std::string_view{} : version.substr(dot + 1);
    if (piece.empty()) continue;
    if (piece.starts_with('+') && piece.size() > 1 && piece[1] != '-') piece.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), value);
    if (error != std::errc{} || end != piece.data() + piece.size()) return std::nullopt;
    pieces.push_back(value);
  }
  if (pieces.empty()) return std::nullopt;
  return pieces;
}

}  // namespace

std::optional<std::strong_ordering> compareVersions(std::string_view a, std::string_view b) {
  auto left = piecesOf(a);
  auto right = piecesOf(b);
  if (!left || !right) return std::nullopt;
  const std::size_t count = std::max(left->size(), right->size());
  left->resize(count);
  right->resize(count);
  return *left <=> *right;
}

}  // namespace quillmeter
