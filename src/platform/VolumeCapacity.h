#pragma once

#include <cstdint>
#include <optional>

namespace quillmeter {

struct VolumeBytes {
  std::int64_t total = 0;
  std::int64_t available = 0;  // to an ordinary user
  friend bool operator==(const VolumeBytes&, const VolumeBytes&) = default;
};

// Capacity of the start-up volume, "/". Main thread: only that volume is asked, so that no mounted share can hang the
// caller.
class VolumeCapacity {
 public:
  virtual ~VolumeCapacity() = default;
  // Absent when either figure is missing.
  virtual std::optional<VolumeBytes> read() = 0;
};

}  // namespace quillmeter
