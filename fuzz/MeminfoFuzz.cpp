// The text of /proc/meminfo and of a zram device, in whatever container: the counts stay within the memory and never
// wrap.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/ProcMeminfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmeter;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const MemoryPageCounts counts = parseMeminfo(text, parseZramBytes(text), 4096);
  const std::uint64_t lists = counts.active + counts.inactive;
  if (counts.external > lists) std::abort();
  const std::uint64_t used = lists + counts.wired + counts.compressor - counts.external;
  if (counts.physicalBytes == 0 && used != 0) std::abort();
  if (used > std::uint64_t{1} << 52) std::abort();  // sums of fields of up to 2^50 kB
  return 0;
}
