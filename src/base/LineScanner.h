#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/MarkerSearch.h"

namespace quillmeter {

// One line that holds the marker, without its line feed (a carriage return before it stays). `text` is valid during the
// call only; LineScanner::paddingBytes bytes behind it may be read (they hold anything), as the JSON parser wants it.
struct ScannedLine {
  std::string_view text;
  std::uint64_t index = 0;  // from 0, counted over all lines of the file; 0 unless the scanner was asked to count
};

enum class ScanEnd { complete, stopped, readError };

// Serves every line-oriented log: reads a descriptor from its current offset in blocks of 1 MiB, searches the marker
// over the whole block and looks for line ends only around a hit. Lines above maximumLineBytes are dropped. The last
// line is delivered without a line feed as well. The buffer is kept between scans, so one scanner reads thousands of
// files without allocating; it grows beyond one block only while a marked line is longer than that, and shrinks again
// afterwards. The beginning of a long line without a marker so far is not kept: a file is read once more from there
// should the marker still come. A stream cannot be, so begin/append/finish keep the line until its end or the bound.
// One thread at a time; the marker holds no line feed, and an empty marker means every line.
class LineScanner {
 public:
  static constexpr std::size_t blockBytes = 1'048'576;
  static constexpr std::size_t maximumLineBytes = 16'777'216;
  static constexpr std::size_t paddingBytes = 64;

  // Both sizes in bytes; tests choose small ones.
  struct Sizes {
    std::size_t block = blockBytes;
    std::size_t maximumLine = maximumLineBytes;
  };

  using Consume = std::function<bool(const ScannedLine&)>;

  explicit LineScanner(std::string marker, bool countLines = false);
  LineScanner(std::string marker, bool countLines, Sizes sizes);

  // `consume` answers whether to go on. A read error ends the scan; the lines before it stay delivered.
  ScanEnd scan(int fd, const Consume& consume);

  // The same over bytes in memory or in chunks: append() pieces, then finish(). For decompressed streams. False once
  // `consume` said stop.
  void begin();
  bool append(std::string_view bytes, const Consume& consume);
  bool finish(const Consume& consume);

  // Bytes of the buffer, padding included.
  std::size_t capacity() const { return capacity_; }

 private:
  struct FreeMemory {
    void operator()(char* memory) const;
  };

  std::size_t overlapBytes() const;
  void setCapacity(std::size_t bytes);
  void makeRoom();
  bool process(std::size_t fresh, const Consume& consume);
  bool searchLines(std::size_t from, const Consume& consume);
  bool skipToLineEnd(std::size_t from);
  bool deliver(std::size_t begin, std::size_t end, const Consume& consume);
  bool restoreLineStart();
  void keepUnfinished(std::size_t floor);
  void countUpTo(std::size_t end);

  MarkerSearch search_;
  bool countLines_;
  Sizes sizes_;
  std::unique_ptr<char[], FreeMemory> buffer_;
  std::size_t capacity_ = 0;

  // The state between two blocks. buffer_[0, used_) is the line without an end so far, or what had to be kept of it.
  std::size_t used_ = 0;
  std::size_t floor_ = 0;    // where the line at hand begins in the buffer
  std::size_t missing_ = 0;  // bytes of its beginning that are not kept
  bool marked_ = false;      // the marker was seen in it
  bool skipping_ = false;    // it is too long: what comes up to its end is dropped
  int file_ = -1;            // seekable file of the scan, or none
  std::int64_t offset_ = 0;  // of the byte behind the buffer in that file
  std::size_t counted_ = 0;  // line feeds before this place in the buffer are in lineIndex_
  std::uint64_t lineIndex_ = 0;
};

}  // namespace quillmeter
