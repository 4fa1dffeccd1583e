#include "platform/linux/JsonPreferenceDocument.h"

#include <gmock/gmock.h>

#include <limits>

namespace quillmeter {
namespace {

using namespace std::string_literals;

std::optional<PreferenceValue> valueOf(const std::string& json) {
  const auto entries = parseJsonPreferences(R"({"k": )" + json + "}");
  if (!entries) return std::nullopt;
  return entries->at("k").value;
}

TEST(JsonPreferenceDocument, everyValueComesBackAsTheTypeThatWasStored) {
  const std::vector<PreferenceValue> values = {true,
                                               false,
                                               std::int64_t{0},
                                               std::numeric_limits<std::int64_t>::max(),
                                               std::numeric_limits<std::int64_t>::min(),
                                               2.0,
                                               -0.0,
                                               1e300,
                                               5e-324,
                                               0.1,
                                               123456789012345680.0,
                                               ""s,
                                               "zh-Hans\n\"\\\0中"s,
                                               PreferenceData{""},
                                               PreferenceData{"a"},
                                               PreferenceData{"ab"},
                                               PreferenceData{"\0\xFF\x80/+"s}};
  for (const PreferenceValue& value : values) {
    const auto entry = makeJsonPreferenceEntry(value);
    ASSERT_TRUE(entry);
    const auto read = parseJsonPreferences(serializeJsonPreferences({{"k", *entry}}));
    ASSERT_TRUE(read) << entry->text;
    EXPECT_EQ(read->at("k").value, value) << entry->text;
  }
  EXPECT_EQ(makeJsonPreferenceEntry(PreferenceData{"abc"})->text, R"({"data": "YWJj"})");
  EXPECT_EQ(makeJsonPreferenceEntry(2.0)->text, "2.0");
}

TEST(JsonPreferenceDocument, whatHasNoTextIsRefused) {
  for (const PreferenceValue& value :
       std::vector<PreferenceValue>{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                    "\xFF"s, "\xED\xA0\x80"s}) {
    EXPECT_FALSE(makeJsonPreferenceEntry(value));
  }
  EXPECT_FALSE(isJsonPreferenceKey("\xC0"));
}

TEST(JsonPreferenceDocument, foreignShapesHaveNoValueAndKeepTheirText) {
  const std::vector<std::string> shapes = {"null",
                                           "[1, [2], {\"data\": \"YWJj\"}]",
                                           "{}",
                                           R"({"data": "YWJj", "more": 1})",
                                           R"({"more": 1, "data": "YWJj"})",
                                           R"({"data": "YWJj", "data": "YWJj"})",
                                           R"({"data": "YWJ"})",
                                           R"({"data": "YWJj="})",
                                           R"({"data": "YR=="})",  // stray bits behind the last byte
                                           R"({"data": "Y Q="})",
                                           R"({"data": ["YWJj"]})",
                                           R"({"data": {"data": "YWJj"}})",
                                           R"({"data": 12})",
                                           R"({"Data": "YWJj"})",
                                           "{ \"brackets\" : \"]}{[ \\\" \\\\\" }"};
  for (const std::string& shape : shapes) {
    const auto entries = parseJsonPreferences("\xEF\xBB\xBF {\"a\":" + shape + " , \"b\"\n:\t" + shape + "}\n");
    ASSERT_TRUE(entries) << shape;
    EXPECT_EQ(entries->at("a").text, shape);
    EXPECT_EQ(entries->at("b").text, shape);
    EXPECT_FALSE(entries->at("a").value) << shape;
    const auto again = parseJsonPreferences(serializeJsonPreferences(*entries));
    EXPECT_EQ(again, entries) << shape;
  }
}

TEST(JsonPreferenceDocument, numbersAreReadAsJsonHasThem) {
  EXPECT_EQ(valueOf("2"), PreferenceValue(std::int64_t{2}));
  EXPECT_EQ(valueOf("2e0"), PreferenceValue(2.0));
  EXPECT_EQ(valueOf("9223372036854775808"), PreferenceValue(9223372036854775808.0));
  // More digits than a double holds stay as they were written.
  const auto entries = parseJsonPreferences(R"({"k": 0.12345678901234567890123})");
  EXPECT_EQ(entries->at("k").text, "0.12345678901234567890123");
}

TEST(JsonPreferenceDocument, theLastOfTwoEqualKeysHolds) {
  EXPECT_EQ(parseJsonPreferences(R"({"k": 1, "k": "two"})")->at("k"), (JsonPreferenceEntry{"two"s, "\"two\""}));
}

TEST(JsonPreferenceDocument, everythingElseIsNoPreferenceFile) {
  const std::vector<std::string> texts = {"",
                                          " ",
                                          "{",
                                          R"({"a": 1)",
                                          R"({"a": 1}})",
                                          "[]",
                                          "1",
                                          "\"a\"",
                                          R"({"a" 1})",
                                          R"({a:1})",
                                          R"({"a":1,})",
                                          "{\"a\":\"\xFF\"}",
                                          "null",
                                          "{}\0"s,
                                          "{\"a\":1}\0\0"s,
                                          R"({"a": 1e999})",
                                          R"({"a": 01})",
                                          R"({"a": NaN})",
                                          "{\"a\":" + std::string(600, '[') + std::string(600, ']') + "}",
                                          "{\"a\":" + std::string(2'000'000, '[')};
  for (const std::string& text : texts) EXPECT_FALSE(parseJsonPreferences(text)) << text.substr(0, 60);
}

}  // namespace
}  // namespace quillmeter
