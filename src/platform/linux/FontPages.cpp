#include "platform/linux/FontPages.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

namespace quillmeter {
namespace {

bool isFontFile(std::string_view path) {
  constexpr std::array<std::string_view, 6> endings = {".ttc", ".ttf", ".otf", ".otc", ".pfb", ".pcf"};
  return std::any_of(endings.begin(), endings.end(), [&](std::string_view ending) { return path.ends_with(ending); });
}

// A line reads "begin-end rights offset device inode path", the addresses in hexadecimal.
void releaseFont(std::string_view mapping) {
  if (!isFontFile(mapping) || mapping.find(" r--") == std::string_view::npos) return;
  std::uintptr_t begin = 0;
  std::uintptr_t end = 0;
  const char* last = mapping.data() + mapping.size();
  const auto first = std::from_chars(mapping.data(), last, begin, 16);
  if (first.ec != std::errc{} || first.ptr == last || *first.ptr != '-') return;
  if (std::from_chars(first.ptr + 1, last, end, 16).ec != std::errc{} || end <= begin) return;
  ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
}

}  // namespace

void releaseFontPages() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) releaseFont(line);
}

}  // namespace quillmeter
