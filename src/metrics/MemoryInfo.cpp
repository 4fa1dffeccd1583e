#include "metrics/MemoryInfo.h"

#include <algorithm>
#include <cmath>

#include "core/model/NumberText.h"

namespace quillmeter {
namespace {

constexpr double gigaByte = 1'073'741'824;
constexpr double fullestPercent = 99.9;  // the gauge never shows a full 100 %

double rounded(double value) {
  return std::round(value * 100) / 100;
}

std::string sizeText(double gigabytes) {
  return defaultDecimalText(rounded(gigabytes)) + " GB";
}

}  // namespace

void MemoryInfo::update() {
  const MemoryPageCounts counts = pages_.read();
  const double total = static_cast<double>(counts.physicalBytes) / gigaByte;
  const double page = static_cast<double>(counts.pageBytes) / gigaByte;
  const auto size = [page](std::uint64_t pages) { return page * static_cast<double>(pages); };

  const double wired = size(counts.wired);
  const double compressed = size(counts.compressor);
  const double used = size(counts.active) + size(counts.inactive) + size(counts.speculative) + wired + compressed -
                      size(counts.purgeable) - size(counts.external);
  percentage_ = rounded(std::min(used * 100 / total, fullestPercent));
  pressure_ = rounded((wired + compressed) * 100 / total);
  app_ = sizeText(used - wired - compressed);
  wired_ = sizeText(wired);
  compressed_ = sizeText(compressed);
}

std::int64_t MemoryInfo::releaseUnusedMemory() {
  return allocator_.releaseUnusedMemory();
}

}  // namespace quillmeter
