// Drawings are tested without a display: on Qt's offscreen platform.
#include <cstdlib>

#include <gtest/gtest.h>
#include <QtGui/QGuiApplication>

#include "support/TemporaryDirectory.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  quillmeter::test::TemporaryDirectory runtime;
  setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  for (const char* scaling : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"}) unsetenv(scaling);
  QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
