#include "screentime/desktop/XServer.h"

#include <unistd.h>

#include <filesystem>

namespace quillmeter::test {

XServer::XServer() {
  int descriptors[2];
  if (pipe(descriptors) != 0) return;
  server_ = ChildProcess({"Xvfb", "-displayfd", "3", "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset"},
                         {.environment = {}, .outputFile = "", .inheritedDescriptor = descriptors[1]});
  close(descriptors[1]);
  // The number comes once the server listens; the pipe closes when it cannot start.
  std::string number;
  for (char c = 0; read(descriptors[0], &c, 1) == 1 && c != '\n';) number += c;
  close(descriptors[0]);
  if (!number.empty()) display_ = ":" + number;
}

// A window that asks to be shown while the manager is only just beginning is never shown: ready when it says so.
ChildProcess XServer::startWindowManager(const std::string& home) const {
  const std::filesystem::path ready = std::filesystem::path(home) / "window-manager-ready";
  std::filesystem::remove(ready);
  ChildProcess manager({"openbox", "--sm-disable", "--startup", "touch " + ready.string()},
                       {.environment = {{"DISPLAY", display_}, {"HOME", home}, {"XDG_CACHE_HOME", home}}});
  for (int polls = 0; polls < 2'000 && manager.isRunning() && !std::filesystem::exists(ready); ++polls) {
    ::usleep(10'000);
  }
  return manager;
}

ChildProcess XServer::openWindow(const std::string& instance, const std::string& windowClass,
                                 const std::string& outputFile) const {
  return ChildProcess({QUILLMETER_X11_TEST_WINDOW, instance, windowClass},
                      {.environment = {{"DISPLAY", display_}}, .outputFile = outputFile});
}

int XServer::xdotool(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), "xdotool");
  return runProgram(arguments, {{"DISPLAY", display_}});
}

}  // namespace quillmeter::test
