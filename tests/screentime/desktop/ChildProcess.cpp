#include "screentime/desktop/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmeter::test {
namespace {

const std::string standardPath = "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin";

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const Options& options) {
  std::vector<std::string> argv = arguments;
  if (const std::string program = installedProgram(argv[0]); !program.empty()) argv[0] = program;
  std::vector<std::string> environment{"PATH=" + standardPath, "LC_ALL=C.UTF-8"};
  for (const auto& [name, value] : options.environment) environment.push_back(name + "=" + value);
  const auto argvPointers = pointers(argv);
  const auto environmentPointers = pointers(environment);
  const std::string output = options.outputFile.empty() ? "/dev/null" : options.outputFile;
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ != 0) return;
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that is ended by force leaves nothing running
  if (getppid() != parent) _exit(126);
  const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  dup2(file, 1);
  dup2(file, 2);
  if (options.inheritedDescriptor >= 0) dup2(options.inheritedDescriptor, 3);
  for (int descriptor = options.inheritedDescriptor >= 0 ? 4 : 3; descriptor < 256; ++descriptor) close(descriptor);
  execve(argvPointers[0], argvPointers.data(), environmentPointers.data());
  _exit(127);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  if (this != &other) {
    end();
    pid_ = std::exchange(other.pid_, -1);
  }
  return *this;
}

bool ChildProcess::isRunning() {
  if (pid_ < 0) return false;
  siginfo_t info{};
  return waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == 0;
}

void ChildProcess::signal(int number) const {
  if (pid_ > 0) kill(pid_, number);
}

int ChildProcess::waitFor() {
  int status = 0;
  while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) continue;
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int ChildProcess::wait() {
  return pid_ < 0 ? 0 : waitFor();
}

int ChildProcess::end() {
  if (pid_ < 0) return 0;
  signal(SIGCONT);
  signal(SIGTERM);
  constexpr int tries = 400;
  for (int count = 0; count < tries && isRunning(); ++count) {
    const timespec moment{0, 10'000'000};
    nanosleep(&moment, nullptr);
  }
  if (isRunning()) signal(SIGKILL);
  return waitFor();
}

int runProgram(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment,
               std::string* output) {
  char name[] = "/tmp/quillmeter-output-XXXXXX";
  const int file = mkstemp(name);
  ChildProcess process(arguments, {.environment = environment, .outputFile = name});
  const int code = process.wait();
  if (output != nullptr) {
    output->clear();
    char buffer[4096];
    for (ssize_t count = 0; (count = read(file, buffer, sizeof buffer)) > 0;)
      output->append(buffer, static_cast<std::size_t>(count));
  }
  close(file);
  unlink(name);
  return code;
}

std::string installedProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return name;
  for (std::size_t start = 0; start < standardPath.size();) {
    const std::size_t end = std::min(standardPath.find(':', start), standardPath.size());
    const auto path = std::filesystem::path(standardPath.substr(start, end - start)) / name;
    if (access(path.c_str(), X_OK) == 0) return path.string();
    start = end + 1;
  }
  return {};
}

}  // namespace quillmeter::test
