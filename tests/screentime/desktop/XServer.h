#pragma once

#include <string>

#include "screentime/desktop/ChildProcess.h"

namespace quillmeter::test {

// A private X server without a screen. Absent display text: it could not be started.
class XServer {
 public:
  XServer();
  const std::string& display() const { return display_; }
  // A window manager in it, ready for windows.
  ChildProcess startWindowManager(const std::string& home) const;
  // A window of a class, which says in `outputFile` once it is mapped; "-" stands for no class at all.
  ChildProcess openWindow(const std::string& instance, const std::string& windowClass,
                          const std::string& outputFile) const;
  int xdotool(std::vector<std::string> arguments) const;
  ChildProcess& process() { return server_; }

 private:
  ChildProcess server_;
  std::string display_;
};

}  // namespace quillmeter::test
