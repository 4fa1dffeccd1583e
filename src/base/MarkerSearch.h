#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmeter {

// Finds one short text in large blocks of log bytes. Compares the two bytes of the marker that are rarest in JSON at 16
// or 32 places at once and looks closer only where both fit: several times as fast as the C library's memmem() on these
// texts (figures in bench/LineScannerBench.cpp). Immutable after construction; safe on every thread.
class MarkerSearch {
 public:
  explicit MarkerSearch(std::string marker);

  const std::string& marker() const { return marker_; }

  // The first occurrence within `text`, or std::string_view::npos. Reads nothing outside `text`. An empty marker is
  // found at 0 of any text that is not empty.
  std::size_t find(std::string_view text) const;

 private:
  std::string marker_;
  std::size_t first_ = 0;  // places of the two rarest bytes, first_ <= second_
  std::size_t second_ = 0;
  bool wide_ = false;  // the processor compares 32 bytes at once
};

}  // namespace quillmeter
