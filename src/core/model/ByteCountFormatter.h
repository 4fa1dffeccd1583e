#pragma once

#include <cstdint>
#include <string>

#include "base/LocaleConventions.h"

namespace quillmeter {

enum class ByteUnit { bytes, kilobytes, megabytes, gigabytes, terabytes, petabytes, exabytes };

// Byte counts as a desktop shows them: the largest allowed unit that leaves a figure of 1 or more, no fraction for
// bytes and kilobytes, up to one digit for megabytes, up to two above, trailing zeros dropped ("12 KB", "1.4 MB",
// "494.38 GB"), and "Zero KB" for nothing. Rounding is exact (halves to even) and moves to the next unit where it
// reaches it: 999,950 bytes are "1 MB". Separators are the locale's. A value; every thread.
class ByteCountFormatter {
 public:
  // Powers of 1000: volumes and files.
  static ByteCountFormatter file(LocaleConventions locale = {});
  // Powers of 1024: memory.
  static ByteCountFormatter memory(LocaleConventions locale = {});
  // Powers of 1024, kilobytes to gigabytes only: transfer rates.
  static ByteCountFormatter transferRate(LocaleConventions locale = {});

  std::string string(std::int64_t byteCount) const;

 private:
  ByteCountFormatter(std::uint64_t step, ByteUnit smallest, ByteUnit largest, LocaleConventions locale);

  std::uint64_t step_;  // between two units: 1000 or 1024
  ByteUnit smallest_;
  ByteUnit largest_;
  LocaleConventions locale_;
};

}  // namespace quillmeter
