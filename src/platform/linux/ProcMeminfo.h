#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/MemoryPages.h"
#include "platform/linux/KeptFile.h"

namespace quillmeter {

// Page counts from the text of /proc/meminfo, so that active + inactive + wired + compressor - external is MemTotal -
// MemAvailable to the page, the figure that every other Linux tool calls used. Reclaimable kernel memory counts as
// available and so enters no count; what the kernel holds beyond the page lists (its reserves too) is wired. Without
// MemAvailable wired is the sum of the known unreclaimable kinds. `zramBytes` is what zram devices take in memory. All
// zeros without MemTotal.
MemoryPageCounts parseMeminfo(std::string_view text, std::uint64_t zramBytes, std::uint64_t pageBytes);

// Memory taken by one zram device, from the text of its mm_stat, in bytes; 0 when it cannot be read.
std::uint64_t parseZramBytes(std::string_view text);

// Memory pages from /proc/meminfo and the zram devices below `root`.
class ProcMeminfoPages final : public MemoryPages {
 public:
  explicit ProcMeminfoPages(std::filesystem::path root = "/");
  ProcMeminfoPages(std::filesystem::path root, std::uint64_t pageBytes);
  MemoryPageCounts read() override;

 private:
  void listZramDevices();

  std::filesystem::path root_;
  std::uint64_t pageBytes_;
  KeptFile meminfo_;
  std::vector<KeptFile> zramDevices_;
  unsigned readings_ = 0;
};

}  // namespace quillmeter
