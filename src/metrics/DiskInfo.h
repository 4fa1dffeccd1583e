#pragma once

#include <cstdint>
#include <string>

#include "base/LocaleConventions.h"
#include "core/model/ByteCountFormatter.h"
#include "platform/VolumeCapacity.h"

namespace quillmeter {

// Capacity of the start-up volume. Keeps its figures while the volume cannot be read. Owned by the executable, main
// thread.
class DiskInfo {
 public:
  DiskInfo(VolumeCapacity& volume, LocaleConventions locale);

  void update();

  double percentage() const { return percentage_; }    // used, percent, at most 99.9
  const std::string& total() const { return total_; }  // "494.38 GB"; "—" before the volume was read once
  const std::string& free() const { return free_; }
  const std::string& used() const { return used_; }

  // The platform's text of a byte count with its figure as default decimal text: a whole number gains ".0".
  static std::string convertByteData(const ByteCountFormatter& formatter, std::int64_t byteCount);

 private:
  VolumeCapacity& volume_;
  ByteCountFormatter formatter_;
  double percentage_ = 0;
  std::string total_ = "—", free_ = "—", used_ = "—";
};

}  // namespace quillmeter
