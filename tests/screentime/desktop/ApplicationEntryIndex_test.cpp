#include "platform/linux/desktop/ApplicationEntryIndex.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/fake/ManualClock.h"
#include "platform/linux/desktop/DesktopApplicationIcons.h"
#include "platform/linux/desktop/IdleStopwatch.h"
#include "platform/linux/desktop/ProcessFacts.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {
namespace {

std::string entry(const std::string& lines) {
  return "[Desktop Entry]\nType=Application\n" + lines;
}

struct Folders {
  TemporaryDirectory directory;
  std::filesystem::path user = directory.path() / "user";
  std::filesystem::path system = directory.path() / "system";

  void add(const std::string& file, const std::string& lines) const {
    directory.write("system/applications/" + file, entry(lines));
  }
  ApplicationEntryIndex index(std::vector<std::string> locales = {"zh_CN", "zh"}) const {
    return {{user, system}, std::move(locales)};
  }
};

TEST(ApplicationEntryIndex, findsByWindowClassThenIdThenLooserMatches) {
  Folders folders;
  folders.add("org.example.Editor.desktop", "Name=Editor\nStartupWMClass=EditorWindow\n");
  folders.add("Browser.desktop", "Name=Browser\n");
  folders.add("com.example.Terminal.desktop", "Name=Terminal\n");
  folders.add("EditorWindow.desktop", "Name=Impostor\n");
  folders.add("player.desktop", "Name=Player\nStartupWMClass=Player-Main\n");
  ApplicationEntryIndex index = folders.index();
  struct Case {
    const char* windowClass;
    const char* instance;
    const char* id;
    const char* name;
  };
  for (const auto& [windowClass, instance, id, name] : {
           Case{"EditorWindow", "editor", "org.example.Editor", "Editor"},
           Case{"other", "EditorWindow", "org.example.Editor", "Editor"},
           Case{"Browser", "x", "Browser", "Browser"},
           Case{"Unknown", "Browser", "Browser", "Browser"},
           Case{"BROWSER", "", "Browser", "Browser"},
           Case{"editorwindow", "", "org.example.Editor", "Editor"},
           Case{"PLAYER-MAIN", "", "player", "Player"},
           Case{"terminal", "", "com.example.Terminal", "Terminal"},
           Case{"Terminal", "", "com.example.Terminal", "Terminal"},
           Case{"com.example.terminal", "", "com.example.Terminal", "Terminal"},
           Case{"Something", "else", "Something", "Something"},
           Case{"", "only-instance", "only-instance", "only-instance"},
       }) {
    const auto application = index.applicationFor(windowClass, instance);
    ASSERT_TRUE(application) << windowClass;
    EXPECT_EQ(application->identifier, id) << windowClass;
    EXPECT_EQ(application->name, name) << windowClass;
  }
  EXPECT_EQ(index.applicationFor("", ""), std::nullopt);
}

TEST(ApplicationEntryIndex, anEntryThatMenusShowGoesBeforeOneTheyDoNot) {
  Folders folders;
  folders.add("a-action.desktop", "Name=New window\nNoDisplay=true\nStartupWMClass=Suite\n");
  folders.add("suite.desktop", "Name=Suite\nStartupWMClass=Suite\n");
  EXPECT_EQ(folders.index().applicationFor("Suite", "")->identifier, "suite");
}

TEST(DesktopApplicationIcons, aNameOfTheThemeOrAnImageFileIsAnIconAndNothingElse) {
  Folders folders;
  const std::string image = folders.directory.write("opt/app.png", "image").string();
  const std::string huge = folders.directory.write("opt/huge.svg", "").string();
  std::filesystem::resize_file(huge, DesktopApplicationIcons::maximumFileBytes + 1);
  const std::string secret = folders.directory.write("opt/secret.txt", "text").string();
  const std::string pipe = (folders.directory.path() / "opt" / "pipe.png").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string link = (folders.directory.path() / "opt" / "link.png").string();
  std::filesystem::create_symlink(image, link);
  ApplicationEntryIndex index = folders.index();
  DesktopApplicationIcons icons(index);
  int number = 0;
  for (const auto& [named, icon] : std::vector<std::pair<std::string, std::string>>{
           {"org.example.Editor", "org.example.Editor"},
           {"editor.svg", "editor"},
           {"  spaced\\sname ", "spaced name"},
           {image, image},
           {link, link},
           {"/nowhere/app.png", ""},
           {huge, ""},
           {secret, ""},
           {pipe, ""},
           {folders.directory.path().string(), ""},
           {"../../secret", ""},
           {"..", ""},
           {std::string(ApplicationEntryIndex::maximumIconBytes + 1, 'x'), ""},
           {"", ""},
       }) {
    const std::string id = "app" + std::to_string(++number);
    folders.add(id + ".desktop", "Name=App\nIcon=" + named + "\n");
    std::filesystem::last_write_time(folders.system / "applications",
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(number));
    EXPECT_EQ(icons.iconName(id), icon) << named;
  }
  folders.add("gone.desktop", "Name=Gone\nIcon=gone\nHidden=true\n");
  EXPECT_EQ(icons.iconName("gone"), "") << "the user removed it";
  EXPECT_EQ(icons.iconName("pid:12:0.0"), "");
  EXPECT_EQ(icons.iconName(""), "");
}

TEST(ApplicationEntryIndex, theUsersFolderGoesBeforeTheSystemsAlsoToHide) {
  Folders folders;
  folders.add("one.desktop", "Name=System's\n");
  folders.add("two.desktop", "Name=Two\n");
  folders.add("sub/three.desktop", "Name=Three\n");
  folders.directory.write("user/applications/one.desktop", entry("Name=User's\n"));
  folders.directory.write("user/applications/two.desktop", "[Desktop Entry]\nHidden=true\n");
  ApplicationEntryIndex index = folders.index();
  EXPECT_EQ(index.applicationFor("one", "")->name, "User's");
  EXPECT_EQ(index.applicationFor("two", "")->name, "two") << "removed by the user";
  EXPECT_EQ(index.applicationFor("sub-three", "")->name, "Three");
}

TEST(ApplicationEntryIndex, changesOfAFolderAreSeen) {
  Folders folders;
  folders.add("one.desktop", "Name=One\n");
  ApplicationEntryIndex index = folders.index();
  EXPECT_EQ(index.applicationFor("two", "")->name, "two");
  folders.add("two.desktop", "Name=Second\n");
  EXPECT_EQ(index.applicationFor("two", "")->name, "Second");
  folders.directory.write("user/applications/two.desktop", entry("Name=Mine\n"));
  EXPECT_EQ(index.applicationFor("two", "")->name, "Mine") << "a folder that appears";
}

TEST(ApplicationEntryIndex, whatIsNoEntryIsPassedOver) {
  Folders folders;
  folders.add("good.desktop", "Name=Good\n");
  const auto applications = folders.system / "applications";
  folders.directory.write("system/applications/link-only.desktop", "[Desktop Entry]\nType=Link\nName=Link\n");
  folders.directory.write("system/applications/empty.desktop", "");
  folders.directory.write("system/applications/binary.desktop", std::string(5'000, '\xff'));
  ASSERT_EQ(mkfifo((applications / "pipe.desktop").c_str(), 0600), 0);
  std::filesystem::create_directory(applications / "folder.desktop");
  std::filesystem::create_directory_symlink(applications, applications / "loop");
  ApplicationEntryIndex index = folders.index();
  EXPECT_EQ(index.applicationFor("good", "")->name, "Good");
  EXPECT_EQ(index.applicationFor("link-only", "")->name, "link-only");
}

TEST(ApplicationEntryIndex, classesThatAreNoUtf8AreTakenForLatin1AndLongOnesAreCut) {
  ApplicationEntryIndex index = Folders().index();
  EXPECT_EQ(index.applicationFor("caf\xe9", "")->identifier, "café");
  EXPECT_EQ(index.applicationFor("café", "")->identifier, "café");
  EXPECT_EQ(index.applicationFor(std::string(9'000, 'x'), "")->identifier,
            std::string(ApplicationEntryIndex::maximumClassBytes, 'x'));
}

TEST(ApplicationEntry, takesTheNameOfTheBestLocaleAndTheMainGroupOnly) {
  const std::string text =
      "# comment\nName=before the group\n[Desktop Entry]\nType = "
      "Application\nName=Plain\nName[zh]=中文\nName[de]=Deutsch\nName[zh_CN]=简体\\s名\n"
      "StartupWMClass=Main\n[Desktop Action new]\nName=New\nStartupWMClass=Action\n";
  EXPECT_EQ(parseApplicationEntry(text, {"zh_CN", "zh"})->name, "简体 名");
  EXPECT_EQ(parseApplicationEntry(text, {"zh_TW", "zh"})->name, "中文");
  EXPECT_EQ(parseApplicationEntry(text, {"fr"})->name, "Plain");
  EXPECT_EQ(parseApplicationEntry(text, {})->startupWindowClass, "Main");
}

TEST(ApplicationEntry, localesFollowThePosixName) {
  EXPECT_EQ(entryLocales("zh_CN.UTF-8"), (std::vector<std::string>{"zh_CN", "zh"}));
  EXPECT_EQ(entryLocales("sr_RS.UTF-8@latin"), (std::vector<std::string>{"sr_RS@latin", "sr_RS", "sr@latin", "sr"}));
  EXPECT_EQ(entryLocales("de"), (std::vector<std::string>{"de"}));
  for (const char* none : {"", "C", "C.UTF-8", "POSIX"}) EXPECT_TRUE(entryLocales(none).empty()) << none;
}

TEST(ProcessFacts, readTheLaunchTimeBehindANameWithBlanksAndBrackets) {
  TemporaryDirectory proc;
  proc.write("stat", "cpu  1 2 3\nctxt 5\nbtime 1700000000\nprocesses 3\n");
  proc.write("42/stat", "42 (a) b (c)) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 12345 20 21\n");
  proc.write("42/comm", "a) b (c)\n");
  EXPECT_NEAR(processLaunchTime(proc.path(), 42).value(), 1'700'000'123.45, 1e-6);
  EXPECT_EQ(processName(proc.path(), 42), "a) b (c)");
  EXPECT_EQ(processLaunchTime(proc.path(), 43), std::nullopt);
  EXPECT_EQ(processName(proc.path(), 43), std::nullopt);
}

TEST(IdleStopwatch, countsFromTheSecondThatWasWaitedForAndStaysBelowItWhileActive) {
  ManualMonotonicClock clock;
  IdleStopwatch stopwatch(clock);
  clock.advance(0.4);
  EXPECT_NEAR(stopwatch.seconds(), 0.4, 1e-9);
  clock.advance(30);
  EXPECT_NEAR(stopwatch.seconds(), 1, 1e-9) << "input goes on, or it would have been told";
  stopwatch.idled();
  clock.advance(70);
  stopwatch.idled();
  EXPECT_NEAR(stopwatch.seconds(), 71, 1e-9);
  stopwatch.resumed();
  clock.advance(0.2);
  EXPECT_NEAR(stopwatch.seconds(), 0.2, 1e-9);
}

}  // namespace
}  // namespace quillmeter::test
