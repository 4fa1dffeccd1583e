// The main of every program that tests widgets: without a display, a bus, or the user's own files.
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <QApplication>

#include "support/TemporaryDirectory.h"

// The font library keeps what it read of the fonts until the process ends; asked for by LeakSanitizer, where it is
// linked.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}

namespace {

// The font library's cache is the one thing that stays where it is: reading all fonts anew takes seconds.
void keepFontCache() {
  if (std::getenv("XDG_CACHE_HOME") != nullptr) return;
  const char* home = std::getenv("HOME");
  if (home != nullptr) setenv("XDG_CACHE_HOME", (std::string(home) + "/.cache").c_str(), 1);
}

void leaveTheDesktop(const std::filesystem::path& home) {
  keepFontCache();
  for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
    setenv(folder, home.c_str(), 1);
  }
  for (const char* bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"}) {
    setenv(bus, "unix:path=/nonexistent", 1);
  }
  for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE",
                               "QT_QPA_PLATFORMTHEME", "XDG_CURRENT_DESKTOP"}) {
    unsetenv(variable);
  }
  setenv("QT_LOGGING_RULES", "qt.qpa.*=false", 0);
}

// One screen of a usual size, whatever the scale.
void makeScreen(const quillmeter::test::TemporaryDirectory& home) {
  constexpr int widthPoints = 1440;
  constexpr int heightPoints = 900;
  const char* given = std::getenv("QUILLMETER_TEST_SCALE");
  const std::string scale = given == nullptr ? "1" : given;
  const auto pixels = [factor = std::stod(scale)](int points) {
    return std::to_string(static_cast<int>(points * factor));
  };
  const auto file = home.write("screen.json", R"({"screens":[{"name":"screen","x":0,"y":0,"width":)" +
                                                  pixels(widthPoints) + R"(,"height":)" + pixels(heightPoints) +
                                                  R"(,"logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})");
  setenv("QT_SCALE_FACTOR", scale.c_str(), 1);
  setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + file.string()).c_str(), 1);
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  const quillmeter::test::TemporaryDirectory home;
  leaveTheDesktop(home.path());
  makeScreen(home);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
