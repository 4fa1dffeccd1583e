#include "screentime/desktop/SwayCompositor.h"

#include <unistd.h>

#include "screentime/desktop/EventLoop.h"

namespace quillmeter::test {
namespace {

constexpr uid_t nobody = 65534;

}  // namespace

SwayCompositor::SwayCompositor() : runtime_(directory_.path() / "run") {
  std::filesystem::create_directory(runtime_);
  std::filesystem::permissions(directory_.path(), std::filesystem::perms{0755});
  std::filesystem::permissions(runtime_, std::filesystem::perms{0700});
}

std::string SwayCompositor::missing() {
  for (const char* program : {"sway", "swaymsg", "setpriv"}) {
    if (installedProgram(program).empty()) return std::string(program) + " is not installed";
  }
  return {};
}

bool SwayCompositor::start() {
  const auto config = directory_.write("sway.cfg", "output HEADLESS-1 resolution 800x600\nfocus_follows_mouse no\n");
  std::vector<std::string> command{"sway", "-c", config};
  if (geteuid() == 0) {
    if (chown(runtime_.c_str(), nobody, nobody) != 0) return false;
    const std::string user = std::to_string(nobody);
    command.insert(command.begin(),
                   {"setpriv", "--reuid=" + user, "--regid=" + user, "--clear-groups", "--pdeathsig=KILL"});
  }
  process_ = ChildProcess(command, {.environment = {{"XDG_RUNTIME_DIR", runtime_},
                                                    {"WLR_BACKENDS", "headless"},
                                                    {"WLR_LIBINPUT_NO_DEVICES", "1"},
                                                    {"WLR_RENDERER", "pixman"},
                                                    {"HOME", runtime_}},
                                    .outputFile = directory_.path() / "sway.log"});
  if (!waitUntil([&] { return !ipcSocket().empty() && message({"-t", "get_version"}) == 0; })) return false;
  for (const auto& entry : std::filesystem::directory_iterator(runtime_)) {
    const std::string name = entry.path().filename();
    if (name.starts_with("wayland-") && !name.ends_with(".lock")) socket_ = name;
  }
  return !socket_.empty();
}

std::string SwayCompositor::ipcSocket() const {
  for (const auto& entry : std::filesystem::directory_iterator(runtime_)) {
    if (entry.path().filename().string().starts_with("sway-ipc")) return entry.path();
  }
  return {};
}

int SwayCompositor::message(std::vector<std::string> arguments, std::string* answer) const {
  arguments.insert(arguments.begin(), {"swaymsg", "-s", ipcSocket()});
  return runProgram(arguments, {{"XDG_RUNTIME_DIR", runtime_}}, answer);
}

std::string SwayCompositor::log() const {
  return readFile(directory_.path() / "sway.log");
}

}  // namespace quillmeter::test
