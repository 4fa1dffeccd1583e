#pragma once

namespace quillmeter {

// How the program shows among the running ones: with an icon of its own where they are listed (a dock, a taskbar) or
// without. Main thread.
class ActivationPolicy {
 public:
  virtual ~ActivationPolicy() = default;
  // False when the system refuses; then nothing changed.
  virtual bool setListed(bool listed) = 0;
  // Brings the program in front of the others.
  virtual void activate() = 0;
};

}  // namespace quillmeter
