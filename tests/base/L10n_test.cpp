#include "base/L10n.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "base/CheckedInt.h"
#include "base/LocaleConventions.h"

namespace quillmeter {
namespace {

TEST(L10n, fillsPlaceholders) {
  struct Row {
    const char* text;
    std::vector<std::string_view> arguments;
    const char* result;
  };
  const Row table[] = {
      {"%@ 的部分日志读取失败", {"Codex"}, "Codex 的部分日志读取失败"},
      {"%d 个文件，%@", {"3", "完成"}, "3 个文件，完成"},
      {"%2$@ before %1$@", {"a", "b"}, "b before a"},
      {"%1$@ %1$d", {"a"}, "a a"},
      {"%@ %1$@ %@", {"a", "b"}, "a a b"},
      {"%@ and %@", {"a"}, "a and %@"},
      {"%3$@", {"a"}, "%3$@"},
      {"100%%", {}, "100%"},
      {"%%@", {"a"}, "%@"},
      {"50 % off %@", {"a"}, "50 % off a"},
      {"%", {"a"}, "%"},
      {"%1$", {"a"}, "%1$"},
      {"%0$@ %1@ %$@ %123$@ %s", {"a"}, "%0$@ %1@ %$@ %123$@ %s"},
      {"%@%@", {"%@", "%d"}, "%@%d"},  // what is filled in is not read again
      {"", {"a"}, ""},
  };
  for (const Row& row : table) {
    const auto& a = row.arguments;
    const std::string result = a.empty()       ? L10n::format(row.text, {})
                               : a.size() == 1 ? L10n::format(row.text, {a[0]})
                                               : L10n::format(row.text, {a[0], a[1]});
    EXPECT_EQ(result, row.result);
  }
}

TEST(L10n, theIdIsTheTextWhereTheCatalogueHasNone) {
  EXPECT_EQ(QM_TR("刚刚"), "刚刚");
  L10n::install([](std::string_view id) { return id == "刚刚" ? std::string("just now") : std::string(); });
  EXPECT_EQ(QM_TR("刚刚"), "just now");
  EXPECT_EQ(QM_TR("昨天"), "昨天");
  L10n::install({});
  EXPECT_EQ(QM_TR("刚刚"), "刚刚");
}

TEST(L10n, textsMayBeAskedForWhileTheLanguageChanges) {
  std::atomic<bool> stop = false;
  std::jthread reader([&] {
    while (!stop) {
      const std::string text = QM_TR("刚刚");
      EXPECT_TRUE(text == "刚刚" || text == "just now") << text;
    }
  });
  for (int i = 0; i < 500; ++i) {
    L10n::install([](std::string_view) { return std::string("just now"); });
    L10n::install({});
  }
  stop = true;
}

TEST(LocaleConventions, listsOfEachLengthUseTheirPattern) {
  const LocaleConventions english;
  LocaleConventions chinese;
  chinese.listPair = chinese.listEnd = "和";
  chinese.listMiddle = "、";
  const std::vector<std::string> items = {"A", "B", "C", "D"};
  const char* expected[][2] = {
      {"", ""}, {"A", "A"}, {"A and B", "A和B"}, {"A, B, and C", "A、B和C"}, {"A, B, C, and D", "A、B、C和D"}};
  for (std::size_t count = 0; count <= items.size(); ++count) {
    EXPECT_EQ(joinList(std::span(items).first(count), english), expected[count][0]);
    EXPECT_EQ(joinList(std::span(items).first(count), chinese), expected[count][1]);
  }
}

TEST(CheckedIntDeathTest, anOverflowEndsTheProcessWithAMessage) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EQ(checkedAdd(INT64_MAX - 1, 1), INT64_MAX);
  EXPECT_EQ(checkedSubtract(INT64_MIN + 1, 1), INT64_MIN);
  EXPECT_DEATH(checkedAdd(INT64_MAX, 1), "fatal error: integer overflow in an addition");
  EXPECT_DEATH(checkedSubtract(INT64_MIN, 1), "fatal error: integer overflow in a subtraction");
}

}  // namespace
}  // namespace quillmeter
