#pragma once

#include <optional>
#include <string_view>

namespace quillmeter {

// What the name of an OpenClaw transcript says: "<session>.jsonl", rotated "<session>.jsonl.reset.<time>" or
// "<session>.jsonl.deleted.<time>" (with up to 32 hexadecimal digits behind it), each perhaps with ".zst". The views
// point into the name.
struct TranscriptFileName {
  std::string_view sessionID;
  bool compressed = false;

  // Absent for every other file, among them the trajectories and checkpoints of a session.
  static std::optional<TranscriptFileName> from(std::string_view name);
};

// Whether this is the name of a cold file: 64 hexadecimal digits (lower case) and ".jsonl.zst". Such a name has no
// slash in it.
bool isColdFileName(std::string_view name);

}  // namespace quillmeter
