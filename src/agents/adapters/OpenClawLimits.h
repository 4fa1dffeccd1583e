#pragma once

#include <cstdint>

namespace quillmeter {

// What one source of OpenClaw may hold, in bytes; beyond it is not read. Tests make them small.
struct OpenClawLimits {
  std::uint64_t transcriptBytes = 536'870'912;  // a compressed transcript or cold file, decompressed
  std::uint64_t eventTextBytes = 16'777'216;    // event_json
  std::uint64_t eventBytes = 4'194'304;         // event_zstd, stored and decompressed
  std::uint64_t archiveBytes = 67'108'864;      // archive_blob, stored and decompressed
};

}  // namespace quillmeter
