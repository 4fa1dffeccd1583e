#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <tl/expected.hpp>

#include "agents/CodexLogParser.h"

namespace quillmeter {

// Finds the last record of a session log from its end, without reading the rest. The search covers the last MiB, then
// the last 4, 16 and 64 MiB, each only while the window before it was smaller than the file. Reads backwards in small
// chunks, so that a window holds no memory; a line is read once more as a whole only when it carries the marker and
// spans chunks.
class CodexTail {
 public:
  static constexpr std::int64_t firstWindowBytes = 1'048'576;
  static constexpr std::int64_t lastGrowingWindowBytes = 16'777'217;  // a window grows while it is smaller
  static constexpr int windowGrowth = 4;

  // Where the last window of a file of `size` bytes begins.
  static std::int64_t searchFloor(std::int64_t size);

  // The last line that is a record; absent when the windows hold none. The errno of a failed read.
  tl::expected<std::optional<CodexRecord>, int> lastCodexPoint(int fd);

 private:
  // The file between `start` and `end` is in the buffer; `lineEnd` is where the line ends that reaches `end`.
  struct Chunk {
    std::int64_t start = 0;
    std::int64_t end = 0;
    std::int64_t bytes = 0;  // held, some behind `end` included
  };

  tl::expected<std::optional<CodexRecord>, int> searchChunk(int fd, const Chunk& chunk, bool isFirstOfWindow);
  tl::expected<std::optional<CodexRecord>, int> readLine(int fd, const Chunk& chunk, std::int64_t start);

  std::vector<char> buffer_;
  std::vector<char> line_;
  std::int64_t lineEnd_ = 0;   // of the line at hand
  bool lineIsMarked_ = false;  // the part of it behind the chunk at hand carries the marker
};

}  // namespace quillmeter
