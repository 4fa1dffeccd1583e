#include "platform/linux/MallocTrimRelief.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextFields.h"

namespace quillmeter {
namespace {

// Second number of /proc/self/statm.
std::int64_t residentPages(KeptFile& statm) {
  std::array<char, 256> buffer;
  std::string_view text = statm.read(buffer);
  takeWord(text);
  return numberFrom<std::int64_t>(takeWord(text)).value_or(0);
}

}  // namespace

std::int64_t MallocTrimRelief::releaseUnusedMemory() {
#ifdef __GLIBC__
  KeptFile statm("/proc/self/statm");
  const std::int64_t before = residentPages(statm);
  ::malloc_trim(0);
  return std::max<std::int64_t>(before - residentPages(statm), 0) * ::sysconf(_SC_PAGESIZE);
#else
  return 0;
#endif
}

}  // namespace quillmeter
