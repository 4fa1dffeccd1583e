#pragma once

#include <cstdint>
#include <string>

#include "platform/AllocatorRelief.h"
#include "platform/MemoryPages.h"

namespace quillmeter {

// Used memory, pressure and sizes from the system's page counts. Owned by the executable; update() on the main thread,
// releaseUnusedMemory() on any.
class MemoryInfo {
 public:
  MemoryInfo(MemoryPages& pages, AllocatorRelief& allocator) : pages_(pages), allocator_(allocator) {}

  // Figures of a system that does not answer are published as they come out, the percentages then not finite.
  void update();
  // Gives what this process's allocator holds unused back to the system; the bytes given back.
  std::int64_t releaseUnusedMemory();

  double percentage() const { return percentage_; }  // percent, at most 99.9
  double pressure() const { return pressure_; }      // wired and compressed, percent
  const std::string& app() const { return app_; }    // "6.25 GB"; empty before the first update
  const std::string& wired() const { return wired_; }
  const std::string& compressed() const { return compressed_; }

 private:
  MemoryPages& pages_;
  AllocatorRelief& allocator_;
  double percentage_ = 0;
  double pressure_ = 0;
  std::string app_, wired_, compressed_;
};

}  // namespace quillmeter
