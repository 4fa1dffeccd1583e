#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "base/LineScanner.h"

namespace quillmeter {

enum class ArchiveReadError {
  invalid,    // no decoder, corrupt data, or the source itself could not be read
  tooLarge,   // more decompressed bytes than the caller allows
  truncated,  // the input ended inside a compressed frame
};

// Reads a stream that may be compressed, in bounded pieces: what is handed on never exceeds the limit, and neither the
// input nor the output is ever in memory as a whole.
class AgentArchiveReader {
 public:
  // The next piece of the input; empty at its end, absent when it cannot be read.
  using Source = std::function<std::optional<std::string_view>()>;
  using Consumer = std::function<void(std::string_view bytes)>;

  static constexpr std::size_t chunkBytes = 1'048'576;
  static constexpr std::size_t outputBytes = 65'536;

  // `limit` counts decompressed bytes. After an error the consumer has seen a part of the stream, which is worth
  // nothing.
  static tl::expected<void, ArchiveReadError> read(const Source& source, bool compressed, std::uint64_t limit,
                                                   const Consumer& consume);

  // All of `bytes` as one piece.
  static Source bytesSource(std::string_view bytes);
  // A descriptor from its current offset in pieces of chunkBytes. The descriptor stays the caller's.
  static Source descriptorSource(int fd);
};

// Splits a decompressed stream into lines and hands on those that hold a marker. The scanner (and its buffers) are
// borrowed.
class ArchiveLines {
 public:
  using Consumer = std::function<void(std::string_view line)>;  // LineScanner::paddingBytes behind it may be read

  ArchiveLines(LineScanner& scanner, Consumer consume);
  void append(std::string_view bytes);
  // Hands on a last line without line feed.
  void finish();

 private:
  LineScanner& scanner_;
  std::function<bool(const ScannedLine&)> consume_;
};

}  // namespace quillmeter
