// The program's windows in a private X server with a window manager.
#include <cstdlib>

#include <gtest/gtest.h>
#include <QtWidgets/QApplication>

#include "ui/system/DesktopSession.h"

// The font library keeps what it read of the fonts until the process ends; asked for by LeakSanitizer, where it is
// linked.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  quillmeter::test::DesktopSession session;
  if (session.display().empty()) {
    fprintf(stderr, "no X server could be started\n");
    return 1;
  }
  setenv("DISPLAY", session.display().c_str(), 1);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  setenv("XDG_RUNTIME_DIR", session.home().path().c_str(), 1);
  unsetenv("WAYLAND_DISPLAY");
  session.startManager();
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
