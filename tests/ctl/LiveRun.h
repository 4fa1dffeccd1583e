#pragma once

#include <sys/types.h>
#include <termios.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/FileDescriptor.h"
#include "ctl/ToolRun.h"

namespace quillmeter::test {

// Runs the real quillmeterctl and talks with it while it runs, on a terminal of its own or through a pipe. What has to
// happen is waited for, with a deadline. The process is killed when it outlives the test.
class LiveRun {
 public:
  enum class Output { terminal, pipe };

  LiveRun(const ToolRun& tool, const std::vector<std::string>& arguments, Output output = Output::terminal);
  ~LiveRun();
  LiveRun(const LiveRun&) = delete;
  LiveRun& operator=(const LiveRun&) = delete;

  // Reads until `text` stands in the output behind `from`; false when it does not come.
  bool waitFor(std::string_view text, std::size_t from = 0);
  // Waits until it was stopped by a signal.
  bool waitUntilStopped();
  // Reads what is left and gives the exit status, 128 + signal when a signal ended it.
  int waitForEnd();
  // The same without reading anything.
  int waitForEndUnread();

  void type(std::string_view keys);
  void resize(unsigned short columns, unsigned short rows);
  void signal(int number);
  void closeOutput() { ours_.reset(); }

  // The terminal's modes now.
  termios modes() const;
  const std::string& out() const { return out_; }

 private:
  bool readSome(int milliseconds);

  pid_t pid_ = -1;
  FileDescriptor ours_, terminal_;
  std::string out_;
};

}  // namespace quillmeter::test
