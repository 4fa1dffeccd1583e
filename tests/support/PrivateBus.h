#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// A program that runs beside the test, silently, and is ended with it. What it writes to descriptor 3 can be read.
class ChildProcess {
 public:
  explicit ChildProcess(std::vector<std::string> arguments) {
    int line[2];
    if (::pipe2(line, O_CLOEXEC) != 0) throw std::runtime_error("pipe2 failed");
    std::vector<char*> pointers;
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_ = ::fork();
    if (pid_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      const int silence = ::open("/dev/null", O_RDWR);
      for (int descriptor : {0, 1, 2}) ::dup2(silence, descriptor);
      ::dup2(line[1], 3);
      ::execvp(pointers[0], pointers.data());
      ::_exit(127);
    }
    ::close(line[1]);
    line_ = line[0];
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() {
    end();
    ::close(line_);
  }

  // Waits up to ten seconds; empty when the program ended or said nothing.
  std::string readLine() {
    std::string text;
    pollfd waited{line_, POLLIN, 0};
    char letter = 0;
    while (::poll(&waited, 1, 10'000) > 0 && ::read(line_, &letter, 1) == 1 && letter != '\n') text += letter;
    return text;
  }
  pid_t pid() const { return pid_; }
  void end() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
    pid_ = -1;
  }

 private:
  pid_t pid_ = -1;
  int line_ = -1;
};

// A D-Bus daemon of the test's own (package dbus), which plays the system and the session bus for this process and its
// children.
class PrivateBus {
 public:
  PrivateBus() {
    address_ = daemon_.readLine();
    if (address_.empty()) throw std::runtime_error("dbus-daemon did not start (package dbus)");
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address_.c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
  }
  ~PrivateBus() {
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  }
  const std::string& address() const { return address_; }
  void end() { daemon_.end(); }

 private:
  TemporaryDirectory folder_;
  ChildProcess daemon_{{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=3",
                        "--address=unix:dir=" + folder_.path().string()}};
  std::string address_;
};

}  // namespace quillmeter::test
