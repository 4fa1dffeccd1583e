#include "ctl/LiveRun.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

#include <gtest/gtest.h>

namespace quillmeter::test {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds patience{60};

int statusFrom(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

LiveRun::LiveRun(const ToolRun& tool, const std::vector<std::string>& arguments, Output output) {
  std::vector<std::string> texts = {"quillmeterctl"};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables;
  for (const auto& [name, value] : tool.environment) variables.push_back(name + "=" + value);
  std::vector<char*> argv;
  for (std::string& text : texts) argv.push_back(text.data());
  argv.push_back(nullptr);
  std::vector<char*> envp;
  for (std::string& text : variables) envp.push_back(text.data());
  envp.push_back(nullptr);

  std::array<int, 2> ends{-1, -1};
  if (output == Output::terminal) {
    winsize size{.ws_row = 30, .ws_col = 100, .ws_xpixel = 0, .ws_ypixel = 0};
    EXPECT_EQ(::openpty(&ends[0], &ends[1], nullptr, nullptr, &size), 0);
    ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
  } else {
    EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  }
  pid_ = ::fork();
  if (pid_ == 0) {
    if (output == Output::terminal) {
      ::login_tty(ends[1]);
    } else {
      ::dup2(::open("/dev/null", O_RDONLY), 0);
      ::dup2(ends[1], 1);
    }
    ::execve(QUILLMETERCTL_PATH, argv.data(), envp.data());
    ::_exit(127);
  }
  ours_.reset(ends[0]);
  if (output == Output::terminal) {
    terminal_.reset(ends[1]);
  } else {
    ::close(ends[1]);
  }
}

LiveRun::~LiveRun() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
}

bool LiveRun::readSome(int milliseconds) {
  pollfd waiting{ours_.get(), POLLIN, 0};
  if (::poll(&waiting, 1, milliseconds) <= 0) return false;
  std::array<char, 65536> block{};
  const ssize_t size = ::read(ours_.get(), block.data(), block.size());
  if (size <= 0) return false;
  out_.append(block.data(), static_cast<std::size_t>(size));
  return true;
}

bool LiveRun::waitFor(std::string_view text, std::size_t from) {
  const auto deadline = Clock::now() + patience;
  while (out_.find(text, from) == std::string::npos) {
    if (Clock::now() > deadline) return false;
    readSome(100);
  }
  return true;
}

bool LiveRun::waitUntilStopped() {
  int status = 0;
  return ::waitpid(pid_, &status, WUNTRACED) == pid_ && WIFSTOPPED(status);
}

int LiveRun::waitForEnd() {
  const auto deadline = Clock::now() + patience;
  int status = 0;
  while (::waitpid(pid_, &status, WNOHANG) == 0) {
    if (Clock::now() > deadline) {
      ADD_FAILURE() << "quillmeterctl did not end";
      return -1;
    }
    readSome(20);
  }
  pid_ = -1;
  while (readSome(0)) {
  }
  return statusFrom(status);
}

int LiveRun::waitForEndUnread() {
  const auto deadline = Clock::now() + patience;
  int status = 0;
  while (::waitpid(pid_, &status, WNOHANG) == 0) {
    if (Clock::now() > deadline) {
      ADD_FAILURE() << "quillmeterctl did not end";
      return -1;
    }
    ::poll(nullptr, 0, 20);
  }
  pid_ = -1;
  return statusFrom(status);
}

void LiveRun::type(std::string_view keys) {
  EXPECT_EQ(::write(ours_.get(), keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

void LiveRun::resize(unsigned short columns, unsigned short rows) {
  const winsize size{.ws_row = rows, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
  EXPECT_EQ(::ioctl(ours_.get(), TIOCSWINSZ, &size), 0);
}

void LiveRun::signal(int number) {
  EXPECT_EQ(::kill(pid_, number), 0);
}

termios LiveRun::modes() const {
  termios modes{};
  EXPECT_EQ(::tcgetattr(terminal_.get(), &modes), 0);
  return modes;
}

}  // namespace quillmeter::test
