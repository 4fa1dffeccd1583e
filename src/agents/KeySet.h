#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillmeter {

// An exact set of short texts for one pass over a file: the texts lie one behind the other in one buffer, so that an
// entry costs its bytes and some ten more, and a text that is already there costs nothing.
class KeySet {
 public:
  // Texts longer than this (no agent writes such a thing) are told apart by their beginning, length and hash.
  static constexpr std::size_t maximumKeyBytes = 4'096;

  // False when the text was there before.
  bool insert(std::string_view key);
  bool contains(std::string_view key) const;
  // Forgets all entries; keeps the buffers unless they have grown large.
  void clear();
  std::size_t size() const { return count_; }

 private:
  // The slot of the entry, or the free one where it belongs. There is at least one slot.
  std::size_t slotOf(std::string_view key) const;
  std::string_view keyAt(std::uint64_t offset) const;
  void grow();

  std::vector<char> texts_;  // per entry: 2 bytes length, text
  std::vector<std::uint64_t>
      slots_;  // open addressing, a power of two: 0 is free, else 16 bits of the hash over offset + 1
  std::size_t count_ = 0;
};

}  // namespace quillmeter
