#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ctl/ToolRun.h"

namespace quillmeter::test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

TEST(SettingsCommand, valuesComeBackAsTheyWereSet) {
  struct Row {
    const char* key;
    const char* byDefault;
    const char* set;
    const char* shown;
  };
  const Row rows[] = {
      {"settings.appTheme", "light", "dark", "dark"},
      {"settings.refreshInterval", "2.0", "5", "5.0"},
      {"settings.refreshInterval", "2.0", "2.5", "2.5"},
      {"settings.showInDock", "true", "off", "false"},
      {"settings.agentTokens.pi", "false", "1", "true"},
      {"onboarding.completedVersion", "0", "1", "1"},
      {"settings.menuBar.symbol", "waveform.path.ecg", "cat.fill", "cat.fill"},
      {"navigation.dashboardDestination", "overview", "-日志", "-日志"},
  };
  const ToolRun tool;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.key);
    EXPECT_EQ(tool.run({"settings", "get", row.key}).out, std::string(row.byDefault) + "\n");
    const ToolResult set = tool.run({"settings", "set", row.key, "--", row.set});
    EXPECT_EQ(set.status, 0) << set.err;
    EXPECT_EQ(set.out, "");
    EXPECT_EQ(tool.run({"settings", "get", row.key}).out, std::string(row.shown) + "\n");
    EXPECT_EQ(tool.run({"settings", "unset", row.key}).status, 0);
    EXPECT_EQ(tool.run({"settings", "get", row.key}).out, std::string(row.byDefault) + "\n");
  }
}

TEST(SettingsCommand, aLayoutIsItsJsonAndListedByItsSize) {
  const ToolRun tool;
  const std::string key = "settings.dashboardLayout.v2";
  const std::string layout = R"([{"kind":"cpu","size":"small","isEnabled":true}])";
  EXPECT_EQ(tool.run({"settings", "get", key}).status, 1);
  ASSERT_EQ(tool.run({"settings", "set", key, layout}).status, 0);
  EXPECT_EQ(tool.run({"settings", "get", key}).out, layout + "\n");
  EXPECT_THAT(tool.run({"settings"}).out, HasSubstr("（48 字节）"));
  EXPECT_THAT(tool.run({"settings", "--language", "en"}).out, HasSubstr("(48 bytes)"));

  // Bytes that are no text do not reach the terminal.
  tool.scratch().write("config/quillmeter/com.kesto.Quillmeter.json",
                       R"({"settings.dashboardLayout.v2":{"data":"/xsA"}})");
  EXPECT_EQ(tool.run({"settings", "get", key}).out, "/xsA\n");
}

TEST(SettingsCommand, theListTellsStoredFromDefaultAndFromWronglyTyped) {
  const ToolRun tool;
  tool.scratch().write(
      "config/quillmeter/com.kesto.Quillmeter.json",
      R"({"settings.appTheme":"dark","settings.refreshInterval":"fast","settings.menuBar.iconSize":20})");
  const std::string list = tool.run({"settings"}).out;
  EXPECT_THAT(list, ContainsRegex("settings.appTheme +dark +已保存\n"));
  EXPECT_THAT(list, ContainsRegex("settings.refreshInterval +2.0 +默认（保存的值类型不符）\n"));
  EXPECT_THAT(list, ContainsRegex("settings.menuBar.iconSize +20.0 +已保存\n"));
  EXPECT_THAT(list, ContainsRegex("settings.appLanguage +zh-Hans +默认\n"));
}

TEST(SettingsCommand, aTornFileIsReportedKeptAsideAndNotLost) {
  const ToolRun tool;
  const std::string torn = R"({"settings.appTheme":"da)";
  tool.scratch().write("config/quillmeter/com.kesto.Quillmeter.json", torn);
  const ToolResult read = tool.run({"settings", "get", "settings.appTheme"});
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(read.out, "light\n");
  EXPECT_THAT(read.err, HasSubstr("已损坏"));
  EXPECT_EQ(readFile(tool.preferencesFile()), torn);

  const ToolResult written = tool.run({"settings", "set", "settings.appTheme", "dark"});
  EXPECT_EQ(written.status, 0);
  EXPECT_THAT(written.err, HasSubstr("损坏的设置文件已保留为"));
  bool kept = false;
  for (const auto& entry : std::filesystem::directory_iterator(tool.preferencesFile().parent_path())) {
    kept = kept || readFile(entry.path()) == torn;
  }
  EXPECT_TRUE(kept);
  const ToolResult healed = tool.run({"settings", "get", "settings.appTheme"});
  EXPECT_EQ(healed.out, "dark\n");
  EXPECT_EQ(healed.err, "");
}

TEST(SettingsCommand, whatIsNoFileIsLeftAloneAndNamedOnce) {
  const ToolRun tool;
  std::filesystem::create_directories(tool.preferencesFile().parent_path());
  ASSERT_EQ(::mkfifo(tool.preferencesFile().c_str(), 0600), 0);
  EXPECT_EQ(tool.run({"settings", "get", "settings.appTheme"}).out, "light\n");
  const ToolResult set = tool.run({"settings", "set", "settings.appTheme", "dark"});
  EXPECT_EQ(set.status, 1);
  EXPECT_EQ(std::count(set.err.begin(), set.err.end(), '\n'), 1) << set.err;
  EXPECT_TRUE(std::filesystem::is_fifo(tool.preferencesFile()));
}

TEST(SettingsCommand, aFolderThatCannotBeWrittenStillServesDefaultsAndSaysWhyItDoesNotSave) {
  ToolRun tool;
  tool.scratch().write("a-file", "");
  tool.environment["XDG_CONFIG_HOME"] = (tool.scratch().path() / "a-file").string();
  EXPECT_EQ(tool.run({"settings", "get", "settings.refreshInterval"}).out, "2.0\n");
  const ToolResult set = tool.run({"settings", "set", "settings.refreshInterval", "3"});
  EXPECT_EQ(set.status, 1);
  EXPECT_EQ(set.out, "");
  EXPECT_THAT(set.err, HasSubstr("设置文件"));
  std::filesystem::create_directories(tool.scratch().path() / "pi/sessions");
  const ToolResult connect = tool.run({"connect", "pi", "pi"});
  EXPECT_EQ(connect.status, 1);
  EXPECT_THAT(connect.err, HasSubstr("无法保存文件夹访问权限，请重新选择。"));
  EXPECT_THAT(connect.err, HasSubstr("Not a directory"));
  EXPECT_EQ(tool.run({"enable", "pi"}).status, 1);
  EXPECT_EQ(tool.run({"usage", "--json"}).status, 0);
}

TEST(SettingsCommand, relativeXdgFoldersAndAMissingHomeChangeNothing) {
  ToolRun tool;
  tool.environment.erase("HOME");
  EXPECT_EQ(tool.run({"settings", "set", "settings.appTheme", "dark"}).status, 0);
  EXPECT_EQ(tool.run({"settings", "get", "settings.appTheme"}).out, "dark\n");
  EXPECT_EQ(tool.run({"usage", "--json"}).status, 0);
  tool.environment["XDG_RUNTIME_DIR"] = "run";
  EXPECT_EQ(tool.run({"usage", "--json"}).status, 0);
}

}  // namespace
}  // namespace quillmeter::test
