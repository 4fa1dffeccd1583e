#pragma once

#include <memory>

class QCoreApplication;

namespace quillmeter {

// The event loop of a program without windows: what QtTimerFactory, QtDescriptorWatcher and QtMainExecutor wait in.
// Made before them, one in a process, on the main thread. It polls by itself instead of through GLib, which would cost
// memory and a second look at everything a turn.
class QtEventLoop {
 public:
  QtEventLoop();
  ~QtEventLoop();
  QtEventLoop(const QtEventLoop&) = delete;
  QtEventLoop& operator=(const QtEventLoop&) = delete;

  // Returns when quit() was called, from within the loop or before; then it may run again.
  void run();
  void quit();

 private:
  std::unique_ptr<QCoreApplication> application_;
  bool quitEarly_ = false;
};

}  // namespace quillmeter
