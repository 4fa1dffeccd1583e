#pragma once

#include <signal.h>

#include <initializer_list>
#include <optional>

#include "base/FileDescriptor.h"

namespace quillmeter {

// Signals as something to read, so that they are handled in the event loop like all else. While it lives they are
// blocked in the thread that made it and in the threads that this one starts; made before those.
class SignalDescriptor {
 public:
  explicit SignalDescriptor(std::initializer_list<int> numbers);
  ~SignalDescriptor();
  SignalDescriptor(const SignalDescriptor&) = delete;
  SignalDescriptor& operator=(const SignalDescriptor&) = delete;

  int descriptor() const { return descriptor_.get(); }
  // The next signal that has arrived.
  std::optional<int> take();

 private:
  sigset_t before_{};
  FileDescriptor descriptor_;
};

}  // namespace quillmeter
