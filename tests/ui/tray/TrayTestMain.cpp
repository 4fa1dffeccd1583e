// The tray's item on a private X server and message bus.
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>
#include <QApplication>

#include "ui/tray/TrayDesktop.h"

// The font library keeps what it read of the fonts until the process ends; asked for by LeakSanitizer, where it is
// linked.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  if (const std::string missing = quillmeter::test::TrayDesktop::missing(); !missing.empty()) {
    std::fprintf(stderr, "%s\n", missing.c_str());
    return 1;
  }
  quillmeter::test::TrayDesktop desktop;
  if (desktop.display().empty() || desktop.busAddress().empty()) {
    std::fprintf(stderr, "no X server or no message bus could be started\n");
    return 1;
  }
  for (const char* variable : {"WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "QT_SCALE_FACTOR"}) unsetenv(variable);
  setenv("DISPLAY", desktop.display().c_str(), 1);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  setenv("XDG_RUNTIME_DIR", desktop.home().c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", desktop.busAddress().c_str(), 1);
  setenv("NO_AT_BRIDGE", "1", 1);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
