#pragma once

#include <optional>

namespace quillmeter {

// How long ago the user last touched an input device of this session. Main thread.
class InputIdleSource {
 public:
  virtual ~InputIdleSource() = default;
  // Seconds since the last input event of any kind; absent when nothing can tell.
  virtual std::optional<double> idleSeconds() = 0;
};

}  // namespace quillmeter
