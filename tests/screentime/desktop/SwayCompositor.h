#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "screentime/desktop/ChildProcess.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// A real compositor without a screen, with one output HEADLESS-1. It refuses to run as root, so that it may belong to
// nobody; root's programs connect to it.
class SwayCompositor {
 public:
  SwayCompositor();
  // What is not installed; empty: all is.
  static std::string missing();
  // False when it does not come up; log() says why.
  bool start();
  void end() { process_.end(); }

  const std::filesystem::path& runtimeFolder() const { return runtime_; }
  const std::string& socket() const { return socket_; }
  // Runs a command of swaymsg; gives its exit code and, if wanted, its answer.
  int message(std::vector<std::string> arguments, std::string* answer = nullptr) const;
  std::string log() const;

 private:
  std::string ipcSocket() const;

  TemporaryDirectory directory_;
  std::filesystem::path runtime_;
  std::string socket_;
  ChildProcess process_;
};

}  // namespace quillmeter::test
