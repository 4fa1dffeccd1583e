#pragma once

#include <cstdint>

namespace quillmeter {

// Asks this process's memory allocator to give back what it holds unused. Any thread; takes some milliseconds.
class AllocatorRelief {
 public:
  virtual ~AllocatorRelief() = default;
  // Bytes returned to the system, never below 0; 0 where the allocator cannot be asked.
  virtual std::int64_t releaseUnusedMemory() = 0;
};

}  // namespace quillmeter
