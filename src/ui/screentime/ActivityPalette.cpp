#include "ui/screentime/ActivityPalette.h"

#include <array>
#include <cstdint>
#include <functional>

namespace quillmeter {
namespace {

const std::array<std::string, 12>& tints() {
  static const std::array<std::string, 12> all = {"4C8DFF", "34C79A", "FF9F43", "A66BFF", "FF6B81", "22B8CF",
                                                  "F2C037", "7A8CFF", "8BC34A", "E86CC8", "C58B5A", "7E93A8"};
  return all;
}

// The same on every run and machine, unlike std::hash.
std::uint32_t hashOf(std::string_view text) {
  std::uint32_t hash = 2'166'136'261U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16'777'619U;
  return hash;
}

}  // namespace

const std::string& ActivityPalette::tint(std::string_view applicationId) {
  if (const auto known = given_.find(applicationId); known != given_.end()) return tints()[known->second];
  std::array<bool, 12> taken{};
  if (given_.size() < tints().size()) {
    for (const auto& [id, index] : given_) taken[index] = true;
  }
  std::size_t index = hashOf(applicationId) % tints().size();
  while (taken[index]) index = (index + 1) % tints().size();
  given_.emplace(applicationId, index);
  return tints()[index];
}

}  // namespace quillmeter
