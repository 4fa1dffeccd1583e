#include "platform/linux/StatvfsVolume.h"

#include <sys/statvfs.h>

#include <limits>

namespace quillmeter {
namespace {

// Absent when the product leaves 63 bits (a file system without a meaningful size).
std::optional<std::int64_t> bytesOf(std::uint64_t blocks, std::uint64_t blockBytes) {
  std::int64_t bytes = 0;
  if (__builtin_mul_overflow(blocks, blockBytes, &bytes)) return std::nullopt;
  return bytes;
}

}  // namespace

std::optional<VolumeBytes> StatvfsVolume::read() {
  struct statvfs status {};
  if (::statvfs(root_.c_str(), &status) != 0 || status.f_blocks == 0) return std::nullopt;
  const auto total = bytesOf(status.f_blocks, status.f_frsize);
  const auto available = bytesOf(status.f_bavail, status.f_frsize);
  if (!total || !available) return std::nullopt;
  return VolumeBytes{*total, *available};
}

}  // namespace quillmeter
