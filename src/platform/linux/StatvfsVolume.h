#pragma once

#include <filesystem>

#include "platform/VolumeCapacity.h"

namespace quillmeter {

// Capacity of the file system that holds `root`.
class StatvfsVolume final : public VolumeCapacity {
 public:
  explicit StatvfsVolume(std::filesystem::path root = "/") : root_(std::move(root)) {}
  std::optional<VolumeBytes> read() override;

 private:
  std::filesystem::path root_;
};

}  // namespace quillmeter
