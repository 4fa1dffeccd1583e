#pragma once

#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quillmeter::test {

// A program started for one test, in an environment of its own, and ended by its process id.
class ChildProcess {
 public:
  struct Options {
    std::map<std::string, std::string> environment;  // on top of a bare PATH and HOME
    std::string outputFile;                          // of both streams; empty: nowhere
    int inheritedDescriptor = -1;                    // passed on as descriptor 3
  };
  ChildProcess() = default;
  ChildProcess(const std::vector<std::string>& arguments, const Options& options);
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ~ChildProcess() { end(); }

  pid_t pid() const { return pid_; }
  bool isRunning();
  void signal(int number) const;
  // Asks it to end, waits for it and ends it by force after some seconds. Gives its exit code, or minus the signal.
  int end();
  // Waits for its own end.
  int wait();

 private:
  int waitFor();
  pid_t pid_ = -1;
};

// Runs a program to its end; gives its exit code and, if wanted, what it wrote to both streams.
int runProgram(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment,
               std::string* output = nullptr);

// Where a program of this name lies in PATH; empty when it is not installed.
std::string installedProgram(const std::string& name);

}  // namespace quillmeter::test
