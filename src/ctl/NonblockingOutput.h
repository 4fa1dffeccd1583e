#pragma once

#include <string>
#include <string_view>

#include "base/FileDescriptor.h"

namespace quillmeter::ctl {

// Writes to a terminal or a pipe without ever waiting for its reader: what does not fit is left out as a whole, a piece
// that was begun is finished first. Terminals and pipes are opened a second time, so that the caller's descriptor,
// which other programs share, stays as it is. One thread.
class NonblockingOutput {
 public:
  explicit NonblockingOutput(int descriptor);
  ~NonblockingOutput();
  NonblockingOutput(const NonblockingOutput&) = delete;
  NonblockingOutput& operator=(const NonblockingOutput&) = delete;

  // Takes `piece` unless an earlier one is not written yet; false then.
  bool offer(std::string_view piece);
  // Goes on with what was begun.
  void sendRest();
  bool isBlocked() const { return !rest_.empty(); }
  // Writes `piece` behind what was begun, waiting at most `milliseconds` for the reader.
  void finishWith(std::string_view piece, int milliseconds);

  // errno of the write that failed; nothing is written afterwards.
  int error() const { return error_; }
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
  FileDescriptor opened_;
  int flagsBefore_ = -1;  // of the caller's descriptor, where it could not be opened again
  std::string rest_;
  int error_ = 0;
};

}  // namespace quillmeter::ctl
