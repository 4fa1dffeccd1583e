#include "ctl/ToolRun.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "base/FileDescriptor.h"
#include "base/Iso8601.h"

namespace quillmeter::test {
namespace {

constexpr std::time_t patienceSeconds = 60;

struct Channel {
  FileDescriptor ours;
  FileDescriptor childs;
};

Channel makePipe() {
  std::array<int, 2> ends{-1, -1};
  EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

Channel makeTerminal() {
  winsize size{.ws_row = 40, .ws_col = 100, .ws_xpixel = 0, .ws_ypixel = 0};
  int master = -1;
  int slave = -1;
  EXPECT_EQ(::openpty(&master, &slave, nullptr, nullptr, &size), 0);
  ::fcntl(master, F_SETFD, FD_CLOEXEC);
  ::fcntl(slave, F_SETFD, FD_CLOEXEC);
  return {FileDescriptor(master), FileDescriptor(slave)};
}

Channel makeOutput(OutputKind kind) {
  switch (kind) {
    case OutputKind::pipe:
      return makePipe();
    case OutputKind::terminal:
      return makeTerminal();
    case OutputKind::closedPipe: {
      Channel channel = makePipe();
      channel.ours.reset();
      return channel;
    }
    case OutputKind::fullDevice:
      return {FileDescriptor(), FileDescriptor(::open("/dev/full", O_WRONLY | O_CLOEXEC))};
    case OutputKind::closed:
      return {};
  }
  return {};
}

// Reads both until the child has closed them; a terminal's end shows as EIO.
void collect(Channel& out, Channel& err, ToolResult& result) {
  const std::time_t deadline = std::time(nullptr) + patienceSeconds;
  while ((out.ours || err.ours) && std::time(nullptr) < deadline) {
    std::array<pollfd, 2> waiting{{{out.ours.get(), POLLIN, 0}, {err.ours.get(), POLLIN, 0}}};
    if (::poll(waiting.data(), waiting.size(), 1000) < 0 && errno != EINTR) break;
    for (std::size_t i = 0; i < waiting.size(); ++i) {
      if (waiting[i].revents == 0) continue;
      std::array<char, 65536> block{};
      const ssize_t size = ::read(waiting[i].fd, block.data(), block.size());
      if (size > 0) {
        (i == 0 ? result.out : result.err).append(block.data(), static_cast<std::size_t>(size));
      } else {
        (i == 0 ? out : err).ours.reset();
      }
    }
  }
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

ToolRun::ToolRun() : workingDirectory(scratch_.path()) {
  const std::string root = scratch_.path().string();
  environment = {{"HOME", root + "/home"},
                 {"PATH", root + "/bin"},
                 {"LC_ALL", "C.UTF-8"},
                 {"TZ", "UTC"},
                 {"TERM", "xterm-256color"},
                 {"QUILLMETER_COMMAND", "quillmeterctl"},
                 {"XDG_CONFIG_HOME", root + "/config"},
                 {"XDG_DATA_HOME", root + "/data"},
                 {"XDG_STATE_HOME", root + "/state"},
                 {"XDG_RUNTIME_DIR", root + "/run"},
                 {"XDG_DATA_DIRS", root + "/share"}};
  for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) environment[name] = value;
  }
  std::filesystem::create_directories(scratch_.path() / "run");
}

std::filesystem::path ToolRun::preferencesFile() const {
  return scratch_.path() / "config/quillmeter/com.kesto.Quillmeter.json";
}

ToolResult ToolRun::run(const std::vector<std::string>& arguments) const {
  std::vector<std::string> argumentTexts = {"quillmeterctl"};
  argumentTexts.insert(argumentTexts.end(), arguments.begin(), arguments.end());
  std::vector<std::string> environmentTexts;
  for (const auto& [name, value] : environment) environmentTexts.push_back(name + "=" + value);

  ToolResult result;
  Channel out = makeOutput(output);
  Channel err = errorIsTerminal ? makeTerminal() : makePipe();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  if (output == OutputKind::closed) {
    posix_spawn_file_actions_addclose(&actions, 1);
  } else {
    posix_spawn_file_actions_adddup2(&actions, out.childs.get(), 1);
  }
  posix_spawn_file_actions_adddup2(&actions, err.childs.get(), 2);
  posix_spawn_file_actions_addchdir_np(&actions, workingDirectory.c_str());
  pid_t pid = -1;
  const int failed = ::posix_spawn(&pid, QUILLMETERCTL_PATH, &actions, nullptr, pointersTo(argumentTexts).data(),
                                   pointersTo(environmentTexts).data());
  posix_spawn_file_actions_destroy(&actions);
  EXPECT_EQ(failed, 0) << "cannot start " << QUILLMETERCTL_PATH;
  if (failed != 0) return result;
  out.childs.reset();
  err.childs.reset();
  collect(out, err, result);
  if (out.ours || err.ours) {
    ADD_FAILURE() << "quillmeterctl did not end";
    ::kill(pid, SIGKILL);
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

namespace {

std::optional<Date> lastTimeIn(const std::string& log) {
  const std::string key = "\"timestamp\":\"";
  std::optional<Date> last;
  for (std::size_t at = log.find(key); at != std::string::npos; at = log.find(key, at + 1)) {
    const std::size_t begin = at + key.size();
    const auto date = parseIso8601(std::string_view(log).substr(begin, log.find('"', begin) - begin));
    if (date && (!last || *date > *last)) last = date;
  }
  return last;
}

}  // namespace

void copyHome(const std::string& name, const std::filesystem::path& target) {
  std::filesystem::copy(std::filesystem::path(QUILLMETER_TEST_DATA) / "homes" / name, target,
                        std::filesystem::copy_options::recursive);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(target)) {
    if (!entry.is_regular_file()) continue;
    const auto date = lastTimeIn(readFile(entry.path()));
    if (!date) continue;
    const timespec time{.tv_sec = date->microseconds / Date::microsecondsPerSecond,
                        .tv_nsec = date->microseconds % Date::microsecondsPerSecond * 1000};
    const std::array<timespec, 2> times{time, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, entry.path().c_str(), times.data(), 0), 0);
  }
}

void expectGolden(const std::string& name, std::string text, const std::filesystem::path& home) {
  for (std::size_t at = text.find(home.string()); at != std::string::npos; at = text.find(home.string(), at)) {
    text.replace(at, home.string().size(), "@HOME@");
  }
  const auto path = std::filesystem::path(QUILLMETER_TEST_DATA) / "golden" / name;
  if (const char* update = std::getenv("QUILLMETER_UPDATE_GOLDEN"); update != nullptr && *update == '1') {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    return;
  }
  ASSERT_TRUE(std::filesystem::exists(path)) << path;
  EXPECT_EQ(text, readFile(path)) << "differs from " << path;
}

}  // namespace quillmeter::test
