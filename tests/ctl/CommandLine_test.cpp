#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ctl/ToolRun.h"

namespace quillmeter::test {
namespace {

using testing::HasSubstr;

struct WrongUse {
  std::vector<std::string> arguments;
  const char* chinese;
  const char* english;
};

TEST(CommandLine, wrongUseIsOneSentenceOnStandardErrorAndStatusTwo) {
  const WrongUse cases[] = {
      {{}, "请给出一个命令", "Name a command"},
      {{"frobnicate"}, "没有“frobnicate”这个命令", "There is no command “frobnicate”"},
      {{"usage", "--frobnicate"}, "不认识参数“--frobnicate”", "Unknown argument “--frobnicate”"},
      {{"usage", "today"}, "不认识参数“today”", "Unknown argument “today”"},
      {{"usage", "--now"}, "--now 的用法有误", "--now is used wrongly"},
      {{"usage", "--now", "yesterday"}, "“yesterday”不是 ISO 8601 时间", "“yesterday” is no ISO 8601 time"},
      {{"usage", "--now", "2026-02-30T00:00:00Z"}, "不是 ISO 8601 时间", "is no ISO 8601 time"},
      {{"usage", "--now", ""}, "“”不是 ISO 8601 时间", "“” is no ISO 8601 time"},
      {{"usage", "--now", "0001-01-01T00:00:00Z"}, "太早", "too early"},
      {{"usage", "--range", "year"}, "没有“year”这个范围", "There is no range “year”"},
      {{"usage", "--folder", "codex"}, "“codex”不是 PROVIDER=DIR", "“codex” is not of the form PROVIDER=DIR"},
      {{"usage", "--folder", "codex="}, "不是 PROVIDER=DIR", "is not of the form PROVIDER=DIR"},
      {{"usage", "--folder", "Codex=/tmp"}, "没有“Codex”这个 Agent", "There is no agent “Codex”"},
      {{"usage", "--folder", "pi=/a", "--folder", "pi=/b"}, "Pi 的文件夹给出了两次", "The folder of Pi is given twice"},
      {{"connect"}, "请给出一个 Agent", "Name an agent"},
      {{"connect", "gemini"}, "没有“gemini”这个 Agent", "There is no agent “gemini”"},
      {{"connect", "codex", "nowhere/.codex"}, "所选目录中没有 Codex 日志文件夹。", ""},
      {{"connect", "codex", "config"}, "请选择 ~/.codex。", "~/.codex"},
      {{"connect", "codex", ""}, "所选目录中没有 Codex 日志文件夹。\n", "Codex"},
      {{"connect", "codex", "a", "b"}, "不认识参数“b”", "Unknown argument “b”"},
      {{"disconnect", "nobody"}, "没有“nobody”这个 Agent", "There is no agent “nobody”"},
      {{"enable"}, "请给出一个 Agent", "Name an agent"},
      {{"disable", ""}, "请给出一个 Agent", "Name an agent"},
      {{"settings", "frobnicate"}, "不认识参数“frobnicate”", "Unknown argument “frobnicate”"},
      {{"settings", "get"}, "请给出一个设置项", "Name a setting"},
      {{"settings", "get", "settings.nothing"},
       "没有“settings.nothing”这个设置项",
       "There is no setting “settings.nothing”"},
      {{"settings", "set", "settings.appTheme"},
       "请给出 settings.appTheme 的新值",
       "Give the new value of settings.appTheme"},
      {{"settings", "set", "settings.appTheme", "pink"}, "light | system | dark", "light | system | dark"},
      {{"settings", "set", "settings.refreshInterval", "-1"}, "必须是 1 … 3600", "takes 1 … 3600"},
      {{"settings", "set", "settings.refreshInterval", "0"}, "必须是 1 … 3600", "takes 1 … 3600"},
      {{"settings", "set", "settings.refreshInterval", "inf"}, "必须是 1 … 3600", "takes 1 … 3600"},
      {{"settings", "set", "settings.refreshInterval", "2,5"}, "必须是 1 … 3600", "takes 1 … 3600"},
      {{"settings", "set", "settings.showInDock", "maybe"}, "true | false", "true | false"},
      {{"settings", "set", "onboarding.completedVersion", "1.5"}, "必须是 0 … 1000000", "takes 0 … 1000000"},
      {{"settings", "set", "settings.dashboardLayout.v2", "layout"}, "必须是 [{", "takes [{"},
      {{"settings", "set", "settings.quickStatusPanel", "true"}, "已停用，不能再写入", "settings.quickStatusPanel"},
      {{"--language", "fr", "usage"}, "没有“fr”这种语言", ""},
      {{"--language"}, "--language 的用法有误", ""},
  };
  const ToolRun tool;
  std::filesystem::create_directories(tool.scratch().path() / "config");
  for (const WrongUse& wrong : cases) {
    for (const char* language : {"zh-Hans", "en"}) {
      const bool chinese = std::string(language) == "zh-Hans";
      if (!chinese && *wrong.english == '\0') continue;
      std::vector<std::string> arguments = wrong.arguments;
      if (!chinese) arguments.insert(arguments.begin(), {"--language", language});
      SCOPED_TRACE(testing::PrintToString(arguments));
      const ToolResult result = tool.run(arguments);
      EXPECT_EQ(result.status, 2);
      EXPECT_EQ(result.out, "");
      EXPECT_THAT(result.err, HasSubstr(chinese ? wrong.chinese : wrong.english));
      EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
  }
  EXPECT_FALSE(std::filesystem::exists(tool.preferencesFile()));
}

TEST(CommandLine, helpAndVersionAreData) {
  const ToolRun tool;
  const ToolResult version = tool.run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "quillmeterctl " QUILLMETER_VERSION "\n");
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                    {"-h"},
                                                    {"usage", "--help"},
                                                    {"--language", "en", "settings", "set", "--help"}}) {
    const ToolResult help = tool.run(arguments);
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_THAT(help.out, HasSubstr("--help"));
  }
  EXPECT_THAT(tool.run({"--help"}).out, HasSubstr("用法"));
  const std::string chinese = tool.run({"screentime", "--help"}).out;
  for (const char* english : {"Options", "Excludes", "Usage"}) EXPECT_THAT(chinese, testing::Not(HasSubstr(english)));
  EXPECT_THAT(tool.run({"--help", "--language=en"}).out, HasSubstr("Usage"));
}

TEST(CommandLine, theLanguageIsTheStoredOneUnlessGivenAndSystemAsksTheLocale) {
  ToolRun tool;
  const auto sentence = [&](const std::vector<std::string>& before) {
    std::vector<std::string> arguments = before;
    arguments.emplace_back("connect");
    return tool.run(arguments).err;
  };
  const char* chinese = "请给出";
  const char* english = "Name an agent";
  tool.environment["LC_ALL"] = "en_US.UTF-8";
  EXPECT_THAT(sentence({}), HasSubstr(chinese));
  ASSERT_EQ(tool.run({"settings", "set", "settings.appLanguage", "en"}).status, 0);
  EXPECT_THAT(sentence({}), HasSubstr(english));
  EXPECT_THAT(sentence({"--language", "zh-Hans"}), HasSubstr(chinese));
  ASSERT_EQ(tool.run({"settings", "set", "settings.appLanguage", "system"}).status, 0);
  EXPECT_THAT(sentence({}), HasSubstr(english));
  tool.environment["LC_ALL"] = "zh_TW.UTF-8";
  EXPECT_THAT(sentence({}), HasSubstr(chinese));
}

}  // namespace
}  // namespace quillmeter::test
