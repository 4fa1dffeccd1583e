#include "ui/system/WindowPlaces.h"

#include <memory>

#include <QWidget>
#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

std::unique_ptr<QWidget> opened(WindowPlaces& places, const QString& name) {
  auto window = std::make_unique<QWidget>();
  window->setObjectName(name);
  window->resize(400, 300);
  places.follow(*window);
  window->show();
  return window;
}

TEST(WindowPlaces, eachWindowOpensAsItWasClosedAlsoAtTheNextStart) {
  const test::TemporaryDirectory directory;
  const auto file = directory.path() / "state" / "windows.ini";
  {
    WindowPlaces places(file);
    const auto dashboard = opened(places, "dashboard");
    dashboard->setGeometry(60, 40, 520, 410);
    dashboard->close();
    opened(places, "settings")->close();
  }
  WindowPlaces places(file);
  EXPECT_EQ(opened(places, "dashboard")->geometry(), QRect(60, 40, 520, 410));
  EXPECT_EQ(opened(places, "settings")->size(), QSize(400, 300));
}

TEST(WindowPlaces, aFileThatHoldsNoneOrCannotBeWrittenChangesNothing) {
  const test::TemporaryDirectory directory;
  directory.write("windows.ini", "[General]\ndashboard=@ByteArray(\\x1\\xd9nonsense)\n");
  WindowPlaces damaged(directory.path() / "windows.ini");
  EXPECT_EQ(opened(damaged, "dashboard")->size(), QSize(400, 300));
  WindowPlaces nowhere(directory.path() / "windows.ini" / "below");
  const auto window = opened(nowhere, "dashboard");
  EXPECT_EQ(window->size(), QSize(400, 300));
  EXPECT_TRUE(window->close());
}

}  // namespace
}  // namespace quillmeter
