#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmeter {

// One line that holds the marker, without its line feed (a carriage return before it stays). `text` is valid during the call
// only; LineScanner::paddingBytes bytes behind it may be read (they hold anything), as the JSON parser wants it.
struct ScannedLine {
  std::string_view text;
  std::uint64_t index = 0;  // from 0, counted over all lines of the file; 0 unless the scanner was asked to count
};

enum class ScanEnd { complete, stopped, readError };

// Serves every line-oriented log: reads a descriptor from its current offset in blocks of 1 MiB, searches the marker over the
// whole block and looks for line ends only around a hit. Lines above maximumLineBytes are dropped. The last line is delivered
// without a line feed as well. The buffer is kept between scans, so one scanner reads thousands of files without allocating; it
// grows beyond one block only while a marked line is longer than that, and shrinks again afterwards.
class LineScanner {
 public:
  static constexpr std::size_t blockBytes = 1'048'576;
  static constexpr std::size_t maximumLineBytes = 16'777'216;
  static constexpr std::size_t paddingBytes = 64;

  explicit LineScanner(std::string marker, bool countLines = false);

  // `consume` answers whether to go on. A read error ends the scan; the lines before it stay delivered.
  ScanEnd scan(int fd, const std::function<bool(const ScannedLine&)>& consume);

  // The same over bytes in memory or in chunks: append() pieces, then finish(). For decompressed streams.
  void begin();
  bool append(std::string_view bytes, const std::function<bool(const ScannedLine&)>& consume);
  bool finish(const std::function<bool(const ScannedLine&)>& consume);

 private:
  std::string marker_;
  bool countLines_;
  std::vector<char> buffer_;
};

}  // namespace quillmeter
