#include "platform/qt/QtLocale.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "base/L10n.h"
#include "platform/qt/QtCatalogue.h"

namespace quillmeter {
namespace {

// Sets exactly the given locale variables for one test and gives all of them back.
class LocaleVariables {
 public:
  using Values = std::map<std::string, std::string>;
  explicit LocaleVariables(const Values& values) {
    for (const char* name : names) {
      const char* old = std::getenv(name);
      old_[name] = old == nullptr ? std::nullopt : std::optional<std::string>(old);
      ::unsetenv(name);
    }
    for (const auto& [name, value] : values) ::setenv(name.c_str(), value.c_str(), 1);
  }
  LocaleVariables(const LocaleVariables&) = delete;
  LocaleVariables& operator=(const LocaleVariables&) = delete;
  ~LocaleVariables() {
    for (const auto& [name, value] : old_) value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
  }

 private:
  static constexpr const char* names[] = {"LC_ALL", "LC_NUMERIC", "LC_TIME", "LC_MESSAGES", "LANG"};
  std::map<std::string, std::optional<std::string>> old_;
};

// None of these locales is generated on a build machine.
TEST(QtLocale, conventionsComeFromTheCategoryThatTheUserSet) {
  struct Row {
    std::map<std::string, std::string> variables;
    std::string decimal;
    std::string grouping;
    Weekday firstWeekday;
  };
  const Row table[] = {
      {{}, ".", "", 1},
      {{{"LANG", "C.UTF-8"}}, ".", "", 1},
      {{{"LANG", "POSIX"}}, ".", "", 1},
      {{{"LANG", "de_DE.UTF-8"}}, ",", ".", 1},
      {{{"LANG", "de_DE@euro"}}, ",", ".", 1},
      {{{"LANG", "en_US.UTF-8"}}, ".", ",", 0},
      {{{"LANG", "zh_CN.UTF-8"}}, ".", ",", 1},
      {{{"LANG", "fr_FR.UTF-8"}}, ",", "\u202f", 1},
      {{{"LANG", "ar_EG.UTF-8"}, {"LC_NUMERIC", "de_CH.UTF-8"}}, ".", "’", 6},
      {{{"LANG", "en_US.UTF-8"}, {"LC_TIME", "en_GB.UTF-8"}}, ".", ",", 1},
      {{{"LANG", "de_DE.UTF-8"}, {"LC_NUMERIC", "C"}, {"LC_TIME", "pt_BR.UTF-8"}}, ".", "", 0},
      {{{"LC_ALL", "en_US.UTF-8"}, {"LC_TIME", "de_DE.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}, {"LANG", "de_DE.UTF-8"}},
       ".",
       ",",
       0},
      {{{"LC_ALL", ""}, {"LC_TIME", ""}, {"LANG", "en_US.UTF-8"}}, ".", ",", 0},
      {{{"LANG", "sr_RS.UTF-8@latin"}}, ",", ".", 1},
      {{{"LANG", "qq_nowhere"}}, ".", "", 1},
      {{{"LANG", ".@"}}, ".", "", 1},
  };
  for (const Row& row : table) {
    const LocaleVariables variables(row.variables);
    const LocaleConventions conventions = localeConventions("en");
    const std::string trace = row.variables.empty() ? "nothing set" : row.variables.begin()->second;
    EXPECT_EQ(conventions.decimalSeparator, row.decimal) << trace;
    EXPECT_EQ(conventions.groupingSeparator, row.grouping) << trace;
    EXPECT_EQ(conventions.firstWeekday, row.firstWeekday) << trace;
  }
}

TEST(QtLocale, listsAreWrittenInTheInterfaceLanguage) {
  const LocaleVariables variables(LocaleVariables::Values{{"LANG", "de_DE.UTF-8"}});
  const std::string items[] = {"Codex", "Claude Code", "Pi", "OpenCode"};
  const LocaleConventions chinese = localeConventions("zh-Hans");
  EXPECT_EQ(joinList(std::span(items).first(2), chinese), "Codex和Claude Code");
  EXPECT_EQ(joinList(items, chinese), "Codex、Claude Code、Pi和OpenCode");
  const LocaleConventions english = localeConventions("en");
  EXPECT_EQ(joinList(std::span(items).first(2), english), "Codex and Claude Code");
  EXPECT_EQ(joinList(items, english), "Codex, Claude Code, Pi, and OpenCode");
}

TEST(QtCatalogue, theInstalledLanguageAnswers) {
  ASSERT_TRUE(installCatalogue("en"));
  EXPECT_EQ(L10n::string("刚刚"), "just now");
  EXPECT_EQ(L10n::string("%@ 的部分日志读取失败，统计可能不完整。").find("的"), std::string::npos);
  EXPECT_EQ(L10n::string("目录里没有的文字"), "目录里没有的文字");
  EXPECT_FALSE(installCatalogue("fr"));
  EXPECT_EQ(L10n::string("刚刚"), "just now") << "an unknown language changes nothing";
  ASSERT_TRUE(installCatalogue("zh-Hans"));
  EXPECT_EQ(L10n::string("刚刚"), "刚刚");
}

TEST(QtCatalogue, theSystemLanguageIsChineseForChineseUsersOnly) {
  const std::pair<std::map<std::string, std::string>, std::string_view> table[] = {
      {{{"LANG", "zh_CN.UTF-8"}}, "zh-Hans"},
      {{{"LANG", "zh_TW.UTF-8"}}, "zh-Hans"},
      {{{"LANG", "de_DE.UTF-8"}}, "en"},
      {{}, "en"},
      {{{"LANG", "zh_CN.UTF-8"}, {"LC_MESSAGES", "en_US.UTF-8"}}, "en"},
      {{{"LC_ALL", "zh_CN"}, {"LC_MESSAGES", "en_US"}}, "zh-Hans"}};
  for (const auto& [values, language] : table) {
    const LocaleVariables variables(values);
    EXPECT_EQ(systemLanguage(), language);
  }
}

}  // namespace
}  // namespace quillmeter
