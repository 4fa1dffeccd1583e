#include "agents/adapters/LocalUsageReader.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

using test::TemporaryDirectory;
using namespace std::string_view_literals;

TEST(LocalUsageReader, numbersAreReadFromEveryFormAndHeldWithinTheirBounds) {
  constexpr std::int64_t bound = 576'460'752'303'423'488;
  const struct {
    UsageValue value;
    std::int64_t expected;
  } cases[] = {
      {std::int64_t{42}, 42},
      {std::int64_t{-1}, 0},
      {std::uint64_t{18'446'744'073'709'551'615U}, bound},
      {std::int64_t{bound}, bound},
      {std::int64_t{bound - 1024}, bound - 1024},
      {12.9, 12},
      {-0.5, 0},
      {1e300, bound},
      {std::numeric_limits<double>::infinity(), 0},
      {std::nan(""), 0},
      {"120"sv, 120},
      {"1.5e3"sv, 1500},
      {"+7"sv, 7},
      {"-7"sv, 0},
      {"+-7"sv, 0},
      {"1e400"sv, 0},
      {"inf"sv, 0},
      {"nan"sv, 0},
      {"0x10"sv, 0},
      {" 5"sv, 0},
      {"5 "sv, 0},
      {"5,5"sv, 0},
      {""sv, 0},
      {true, 0},
      {std::monostate{}, 0},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(LocalUsageReader::integer(value), expected) << value.index();
}

TEST(LocalUsageReader, datesAreSecondsMillisecondsOrIso8601) {
  const Date noon = Date::fromWholeSeconds(1'700'000'000);
  const struct {
    UsageValue value;
    std::optional<Date> expected;
  } cases[] = {
      {std::int64_t{1'700'000'000}, noon},
      {std::int64_t{1'700'000'000'000}, noon},
      {1'700'000'000.0, noon},
      {"1700000000"sv, noon},
      {"1700000000000"sv, noon},
      {"1.7e9"sv, noon},
      {std::int64_t{1'700'000'000'123}, Date{1'700'000'000'123'000}},
      {std::int64_t{10'000'000'000}, Date::fromWholeSeconds(10'000'000'000)},
      {std::int64_t{10'000'000'001}, Date{10'000'000'001'000}},
      {"2023-11-14T22:13:20Z"sv, noon},
      {"2023-11-14T22:13:20.125Z"sv, Date{noon.microseconds + 125'000}},
      {"2023-11-15T06:13:20+08:00"sv, noon},
      {" 1700000000"sv, std::nullopt},
      {"\t1700000000"sv, std::nullopt},
      {""sv, std::nullopt},
      {"nan"sv, std::nullopt},
      {"inf"sv, std::nullopt},
      {"yesterday"sv, std::nullopt},
      {true, std::nullopt},
      {std::monostate{}, std::nullopt},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(LocalUsageReader::date(cases[i].value), cases[i].expected) << "case " << i;
  }
}

TEST(LocalUsageReader, secondsAreWrittenAsADoubleIs) {
  EXPECT_EQ(secondsText(Date::fromWholeSeconds(1'700'000'000)), "1700000000.0");
  EXPECT_EQ(secondsText(Date{1'700'000'000'123'000}), "1700000000.123");
}

TEST(LocalUsageReader, onlyRegularVisibleFilesOfExactlyThatExtensionAreListed) {
  const TemporaryDirectory folder;
  folder.write("b/two.jsonl", "12345");
  folder.write("a/one.jsonl", "");
  folder.write("a/ONE.JSONL", "");
  folder.write("a/one.jsonl.zst", "");
  folder.write("a/jsonl", "");
  folder.write(".hidden/three.jsonl", "");
  folder.write("a/.jsonl", "");
  std::filesystem::create_symlink(folder.path() / "b/two.jsonl", folder.path() / "a/link.jsonl");
  std::filesystem::create_directory(folder.path() / "folder.jsonl");
  const auto files = LocalUsageReader::files(folder.path(), "jsonl");
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[0].path, folder.path() / "a/one.jsonl");
  EXPECT_EQ(files[1].path, folder.path() / "b/two.jsonl");
  EXPECT_EQ(files[1].signature.size, 5);
  EXPECT_TRUE(LocalUsageReader::files(folder.path() / "absent", "jsonl").empty());
}

TEST(LocalUsageReader, linesWithoutTheMarkerOrWithoutAnObjectAreLeftOut) {
  const TemporaryDirectory folder;
  const auto file = folder.write("log.jsonl",
                                 "{\"usage\":1}\n"
                                 "{\"use\":2}\n"
                                 "\n"
                                 "{\"usage\":3\n"
                                 "[\"usage\"]\n"
                                 "{\"usage\":5} trailing\n"
                                 "{\"usage\":6}\r\n"
                                 "{\"usage\":7}");
  SystemFileOpener opener;
  LocalUsageReader reader(opener);
  std::vector<std::pair<std::uint64_t, std::int64_t>> seen;
  EXPECT_TRUE(reader.lines(file, [&](const JsonObject& line, std::uint64_t index) {
    seen.emplace_back(index, LocalUsageReader::integer(line.value("usage")));
  }));
  EXPECT_THAT(seen, ::testing::ElementsAre(std::pair(0, 1), std::pair(6, 6), std::pair(7, 7)));
  EXPECT_FALSE(reader.lines(folder.path() / "absent.jsonl", [](const JsonObject&, std::uint64_t) { FAIL(); }));
}

TEST(LocalUsageReader, sessionsAreSortedAndTheirEventsKeepTheOrderOfArrival) {
  const auto event = [](std::string session, std::string id) {
    return SessionEvent{std::move(session), {std::move(id), {}, {}}};
  };
  const auto sessions = LocalUsageReader::grouped({event("b", "1"), event("a", "9"), event("b", "0")});
  ASSERT_EQ(sessions.size(), 2U);
  EXPECT_EQ(sessions[0].id, "a");
  EXPECT_EQ(sessions[1].id, "b");
  EXPECT_EQ(sessions[1].events[0].id, "1");
  EXPECT_EQ(sessions[1].events[1].id, "0");
  EXPECT_EQ(sessions[1].activityDate, std::nullopt);
}

TEST(JsonParser, whatTheGrammarAllowsIsReadAndWhatIsTornIsNot) {
  JsonParser parser;
  const struct {
    std::string_view text;
    bool readable;
  } cases[] = {
      {R"({"text":"cut \ud83d","usage":1})", true},  // half a pair, as JavaScript writes a cut emoji
      {R"({"text":"\udc00 \ud83d\u0041 \ud83d","usage":1})", true},
      {R"({"text":"\ud83d\ude00 \\ud83d","usage":1})", true},
      {R"({"big":-123456789012345678901234567890,"usage":1})", true},
      {R"({"big":[18446744073709551616],"usage":1})", true},
      {R"({"text":"\ud83d","usage":1)", false},
      {R"({"text":"\ud83","usage":1})", false},
      {R"({"text":"\x","usage":1})", false},
      {R"({"big":018446744073709551616,"usage":1})", false},
      {"{\"text\":\"\xff\",\"usage\":1}", false},
      {R"({"inner":{"usage":1})", false},
      {R"(["usage"])", false},
      {"", false},
  };
  for (const auto& [text, readable] : cases) {
    const auto object = parser.parse(text);
    ASSERT_EQ(object.has_value(), readable) << text;
    if (object) {
      EXPECT_EQ(LocalUsageReader::integer(object->value("usage")), 1) << text;
    }
  }
}

TEST(JsonParser, aDeepNestOrAGiantLeavesTheParserUsable) {
  JsonParser parser;
  EXPECT_FALSE(parser.parse("{\"a\":" + std::string(100'000, '[')));
  EXPECT_TRUE(parser.parse("{\"a\":\"" + std::string(16'000'000, 'x') + "\"}"));
  const auto small = parser.parse(R"({"a":{"b":"c"},"n":null,"big":18446744073709551615})");
  ASSERT_TRUE(small);
  EXPECT_EQ(small->object("a")->string("b"), "c");
  EXPECT_FALSE(small->object("n"));
  EXPECT_TRUE(small->contains("n"));
  EXPECT_FALSE(small->contains("m"));
  EXPECT_EQ(small->value("big"), UsageValue(std::uint64_t{18'446'744'073'709'551'615U}));
}

}  // namespace
}  // namespace quillmeter
