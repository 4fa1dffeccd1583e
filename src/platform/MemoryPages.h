#pragma once

#include <cstdint>

namespace quillmeter {

// The machine's memory in pages, by use. What a system does not tell apart is 0.
struct MemoryPageCounts {
  std::uint64_t physicalBytes = 0;
  std::uint64_t pageBytes = 0;
  std::uint64_t active = 0;
  std::uint64_t inactive = 0;
  std::uint64_t speculative = 0;  // read ahead, not used yet
  std::uint64_t wired = 0;        // cannot be moved or paged out
  std::uint64_t compressor = 0;   // hold compressed pages
  std::uint64_t purgeable = 0;    // may be dropped at any time
  std::uint64_t external = 0;     // backed by files; part of active, inactive and speculative
  friend bool operator==(const MemoryPageCounts&, const MemoryPageCounts&) = default;
};

// The virtual-memory statistics. Main thread; never blocks.
class MemoryPages {
 public:
  virtual ~MemoryPages() = default;
  // All zeros when the system does not answer.
  virtual MemoryPageCounts read() = 0;
};

}  // namespace quillmeter
