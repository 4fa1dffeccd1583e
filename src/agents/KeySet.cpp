#include "agents/KeySet.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>

namespace quillmeter {

namespace {

constexpr std::size_t firstSlots = 256;
constexpr std::size_t keptSlots = 16'384;  // of 8 bytes
constexpr std::size_t keptTextBytes = 262'144;
constexpr int tagShift = 48;  // offsets stay below 2^48
constexpr std::uint64_t offsetMask = (std::uint64_t{1} << tagShift) - 1;

std::uint64_t hashOf(std::string_view key) {
  return std::hash<std::string_view>()(key);
}

std::uint64_t tagOf(std::uint64_t hash) {
  return hash >> tagShift << tagShift;
}

// The key itself, or `stand` for one that is too long.
std::string_view bounded(std::string_view key, std::string& stand) {
  if (key.size() <= KeySet::maximumKeyBytes) return key;
  stand = key.substr(0, KeySet::maximumKeyBytes);
  stand += '#';
  stand += std::to_string(key.size());
  stand += '#';
  stand += std::to_string(hashOf(key));
  return stand;
}

}  // namespace

bool KeySet::insert(std::string_view key) {
  std::string stand;
  key = bounded(key, stand);
  if ((count_ + 1) * 4 > slots_.size() * 3) grow();
  const std::size_t slot = slotOf(key);
  if (slots_[slot] != 0) return false;
  slots_[slot] = tagOf(hashOf(key)) | (texts_.size() + 1);
  const auto length = static_cast<std::uint16_t>(key.size());
  const std::size_t offset = texts_.size();
  texts_.resize(offset + sizeof(length) + key.size());
  std::memcpy(texts_.data() + offset, &length, sizeof(length));
  std::memcpy(texts_.data() + offset + sizeof(length), key.data(), key.size());
  ++count_;
  return true;
}

bool KeySet::contains(std::string_view key) const {
  std::string stand;
  return count_ != 0 && slots_[slotOf(bounded(key, stand))] != 0;
}

std::size_t KeySet::slotOf(std::string_view key) const {
  const std::uint64_t hash = hashOf(key);
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  for (; slots_[slot] != 0; slot = (slot + 1) & mask) {
    const std::uint64_t entry = slots_[slot];
    if ((entry & ~offsetMask) == tagOf(hash) && keyAt((entry & offsetMask) - 1) == key) break;
  }
  return slot;
}

std::string_view KeySet::keyAt(std::uint64_t offset) const {
  std::uint16_t length = 0;
  std::memcpy(&length, texts_.data() + offset, sizeof(length));
  return {texts_.data() + offset + sizeof(length), length};
}

void KeySet::grow() {
  std::vector<std::uint64_t> old(std::max(firstSlots, slots_.size() * 2), 0);
  old.swap(slots_);
  const std::size_t mask = slots_.size() - 1;
  for (const std::uint64_t entry : old) {
    if (entry == 0) continue;
    std::size_t slot = hashOf(keyAt((entry & offsetMask) - 1)) & mask;
    while (slots_[slot] != 0) slot = (slot + 1) & mask;
    slots_[slot] = entry;
  }
}

void KeySet::clear() {
  count_ = 0;
  if (texts_.capacity() > keptTextBytes) texts_ = {};
  texts_.clear();
  if (slots_.size() > keptSlots) {
    slots_ = {};
  } else {
    std::fill(slots_.begin(), slots_.end(), 0);
  }
}

}  // namespace quillmeter
