#include "platform/linux/DesktopApplicationIndex.h"

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;

// A change within the clock tick of the last listing would go unnoticed: give the folder another time.
void touch(const fs::path& folder, int seconds) {
  fs::last_write_time(folder, fs::last_write_time(folder) + std::chrono::seconds(seconds));
}

TEST(DesktopEntry, onlyTheMainGroupOfAnApplicationCounts) {
  EXPECT_EQ(
      parseDesktopEntry(
          "# c\n[Desktop Entry]\r\nType=Application\r\nName = Codex \nName[de]=Kodex\n[Desktop Action x]\nName=No\n"),
      (DesktopEntryName{"Codex", false}));
  EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nHidden=true"), (DesktopEntryName{"", true}));
  for (const char* text :
       {"", "Type=Application\nName=x", "[Desktop Entry]\nType=Link\nName=x", "[Other]\nType=Application\nName=x"}) {
    EXPECT_FALSE(parseDesktopEntry(text)) << text;
  }
}

TEST(DesktopApplicationIndex, applicationsAreKnownByFileNameAndByName) {
  const TemporaryDirectory data;
  data.write("a/applications/codex.desktop", "[Desktop Entry]\nType=Application\nName=Something\n");
  data.write("b/applications/com.example.wb.desktop", "[Desktop Entry]\nType=Application\nName=WorkBuddy\n");
  data.write("b/applications/vendor/tool.desktop", "[Desktop Entry]\nType=Application\nName=Nested Tool\n");
  data.write("b/applications/broken.desktop", "Codex2");
  DesktopApplicationIndex index({data.path() / "a", data.path() / "missing", data.path() / "b"});
  for (const char* name : {"Codex", "codex", "workbuddy", "WorkBuddy", "Something", "nested tool"})
    EXPECT_TRUE(index.contains(name)) << name;
  for (const char* name : {"", "cod", "broken", "vendor", "codex.desktop"}) EXPECT_FALSE(index.contains(name)) << name;
}

TEST(DesktopApplicationIndex, theFirstFolderDecidesAlsoThatAnApplicationIsHidden) {
  const TemporaryDirectory data;
  data.write("user/applications/codex.desktop", "[Desktop Entry]\nHidden=true\n");
  data.write("system/applications/codex.desktop", "[Desktop Entry]\nType=Application\nName=Codex\n");
  DesktopApplicationIndex index({data.path() / "user", data.path() / "system"});
  EXPECT_FALSE(index.contains("Codex"));
  fs::remove(data.path() / "user/applications/codex.desktop");
  touch(data.path() / "user/applications", 10);
  EXPECT_TRUE(index.contains("Codex"));
}

TEST(DesktopApplicationIndex, whatIsInstalledWhileTheProgramRunsIsNoticed) {
  const TemporaryDirectory data;
  DesktopApplicationIndex index({data.path()});
  EXPECT_FALSE(index.contains("WorkBuddy"));
  data.write("applications/WorkBuddy.desktop", "[Desktop Entry]\nType=Application\n");
  EXPECT_TRUE(index.contains("WorkBuddy"));
  fs::remove(data.path() / "applications/WorkBuddy.desktop");
  touch(data.path() / "applications", 10);
  EXPECT_FALSE(index.contains("WorkBuddy"));
}

}  // namespace
}  // namespace quillmeter
