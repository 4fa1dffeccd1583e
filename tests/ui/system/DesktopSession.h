#pragma once

#include <csignal>
#include <string>

#include "screentime/desktop/XServer.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// The private X server that the test program's windows appear on, and its window manager, which a test may end and
// start again. Made by main(), ended after the last test.
class DesktopSession {
 public:
  DesktopSession() { current_ = this; }
  ~DesktopSession() { current_ = nullptr; }
  static DesktopSession& current() { return *current_; }

  const std::string& display() const { return server_.display(); }
  const TemporaryDirectory& home() const { return home_; }
  void startManager() { manager_ = server_.startWindowManager(home_.path()); }
  void endManager() { manager_.end(); }
  void killManager() {
    manager_.signal(SIGKILL);
    manager_.wait();
  }

 private:
  static inline DesktopSession* current_ = nullptr;
  TemporaryDirectory home_;
  XServer server_;
  ChildProcess manager_;
};

}  // namespace quillmeter::test
