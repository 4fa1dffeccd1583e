#include "agents/JsonCursor.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "AgentLogs.h"
#include "agents/JsonString.h"
#include "agents/LogFields.h"

namespace quillmeter {
namespace {

using test::PaddedText;

bool accepts(std::string_view text) {
  const PaddedText padded(text);
  JsonCursor cursor(padded.view());
  cursor.skip();
  return cursor.atEnd();
}

TEST(JsonCursor, acceptsWhatTheGrammarAllows) {
  for (const char* text : {"{}", "[]", " { } ", "[1,2]", R"({"a":{"b":[1,{"c":[]}]},"d":"e"})", "0", "-0.5e+10", "1E5",
                           "true", "null", R"("")", R"("\"\\\/\b\f\n\r\t\u00e9\uD83D\uDE00")", R"("\ud83d")",
                           "\"\x7F\xC3\xA9\"", "{\"a\" : 1 , \"b\" : 2}\r"}) {
    EXPECT_TRUE(accepts(text)) << text;
  }
}

TEST(JsonCursor, refusesWhatIsTornOrGarbled) {
  for (const char* text :
       {"",           " ",        "{",        "[",     "}",    "{]",    "[}",         "[1,]",
        "{\"a\":1,}", "{\"a\"}",  "{\"a\":}", "{a:1}", "{,}",  "{1:2}", "[1 2]",      "tru",
        "nul",        "truex",    "01",       "1.",    ".5",   "-",     "+1",         "1e",
        "1e+",        "0x10",     "NaN",      "'a'",   "\"a",  "\"\\",  "\"\\x\"",    "\"\\u12g4\"",
        "\"\\u123",   "\"a\nb\"", "\"\t\"",   "{}{}",  "{} x", "[1]]",  "{\"a\":[1}", "{\"a\":{\"b\":1}",
        "// c\n{}"}) {
    EXPECT_FALSE(accepts(text)) << text;
  }
}

TEST(JsonCursor, nestingIsBounded) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_TRUE(accepts(nested(JsonCursor::maximumDepth)));
  EXPECT_FALSE(accepts(nested(JsonCursor::maximumDepth + 1)));
  EXPECT_FALSE(accepts(nested(10'000)));
  EXPECT_FALSE(accepts(std::string(1'000'000, '[')));
}

TEST(JsonCursor, readsWantedFieldsAndPassesOverTheRest) {
  const PaddedText text(R"({"skip":{"a":[1,"}"]},"n":"\u0031","list":[3],"in":{"x":2},"empty":{},"last":null})");
  JsonCursor cursor(text.view());
  ASSERT_TRUE(cursor.enterObject());
  std::string seen;
  for (std::string_view key; cursor.nextKey(key);) {
    seen += std::string(key) + "=";
    if (key == "in" || key == "empty") {
      ASSERT_TRUE(cursor.enterObject());
      for (std::string_view inner; cursor.nextKey(inner);)
        seen += std::string(inner) + ":" + std::string(cursor.scalar());
    } else {
      seen += cursor.scalar();
    }
    seen += ' ';
  }
  EXPECT_EQ(seen, "skip= n=\\u0031 list= in=x:2 empty= last=null ");
  EXPECT_TRUE(cursor.atEnd());
}

TEST(JsonCursor, decodesEscapes) {
  std::string buffer;
  EXPECT_EQ(unescapeJson("plain", buffer), "plain");
  EXPECT_EQ(unescapeJson(R"(a\"\\\/\b\f\n\r\t\u0041\u00e9\u20AC\uD83D\uDE00z)", buffer),
            "a\"\\/\b\f\n\r\tA\u00e9\u20ac\U0001F600z");
  const std::string high(unescapeJson(R"(\ud83d)", buffer));
  const std::string pairOfHighs(unescapeJson(R"(\ud83d\ud83d)", buffer));
  EXPECT_EQ(high.size(), 3u);
  EXPECT_EQ(pairOfHighs, high + high);
}

// Random damage to a real line: whatever another reader takes as JSON must be taken here, and the other way round.
TEST(JsonCursor, agreesWithAnotherReader) {
  std::mt19937 random(20261121);
  const std::string line =
      test::claudeLine("2026-11-21T01:00:00Z", "req", {1, 2, 3, 4}, R"(caf\u00e9 \"quoted\" [1,2] {\n})");
  const std::string_view alphabet = "{}[]\",:\\u09eE+-.tn \n";
  int accepted = 0;
  for (int round = 0; round < 4000; ++round) {
    std::string text = line;
    for (auto edits = random() % 3; edits-- > 0;) {
      const std::size_t place = random() % text.size();
      if (random() % 2 != 0) {
        text.erase(place, 1 + random() % 3);
      } else {
        text.insert(place, 1, alphabet[random() % alphabet.size()]);
      }
    }
    const bool isJson = nlohmann::json::accept(text);
    accepted += isJson ? 1 : 0;
    ASSERT_EQ(accepts(text), isJson) << text;
  }
  EXPECT_GT(accepted, 500);
}

// The place of the closing quote by the rules, one byte after the other; npos for a fault.
std::size_t closingQuote(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == '"') return at;
    if (byte < 0x20) break;
    if (byte != '\\') continue;
    if (++at == text.size() || std::string_view("\"\\/bfnrtu").find(text[at]) == std::string_view::npos) break;
    if (text[at] != 'u') continue;
    if (text.size() - at < 5 ||
        text.substr(at + 1, 4).find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
      break;
    at += 4;
  }
  return std::string_view::npos;
}

// Long strings full of backslashes, so that runs and escapes fall on every border of the blocks that are looked at
// together.
TEST(JsonString, endsWhereTheRulesSay) {
  std::mt19937 random(7);
  int found = 0;
  for (int round = 0; round < 30'000; ++round) {
    static constexpr std::string_view sound[] = {"a",   "abcdefghijklmnop", "\\\\", "\\\"", "\\n", "\\u00e9",
                                                 "\\/", "\xC3\xA9",         "\x7F"};
    static constexpr std::string_view faults[] = {"\"",     "\\", "\\x", "\\u12", "\x1F", std::string_view("\0", 1),
                                                  "\\u00g0"};
    std::string text;
    for (auto parts = random() % 60; parts-- > 0;) text += sound[random() % std::size(sound)];
    if (random() % 3 == 0) text.insert(random() % (text.size() + 1), faults[random() % std::size(faults)]);
    if (random() % 4 != 0) text += "\" tail\\";
    const PaddedText padded(text);
    const char* begin = padded.view().data();
    const std::size_t expected = closingQuote(text);
    for (const auto search : {endOfJsonString, endOfJsonStringPortable}) {
      const char* quote = search(begin, begin + text.size());
      ASSERT_EQ(quote == nullptr ? std::string_view::npos : static_cast<std::size_t>(quote - begin), expected) << text;
    }
    found += expected == std::string_view::npos ? 0 : 1;
  }
  EXPECT_GT(found, 10'000);
}

TEST(LogFields, integersComeFromNumbersAndDecimalStrings) {
  const auto read = [](std::string_view value) {
    const PaddedText text(value);
    JsonCursor cursor(text.view());
    const auto result = readInteger(cursor);
    EXPECT_TRUE(cursor.atEnd()) << value;
    return result;
  };
  const std::vector<std::pair<const char*, std::optional<std::int64_t>>> cases = {
      {"12", 12},
      {"-3", -3},
      {"12.9", 12},
      {"-12.9", -12},
      {"1e3", 1000},
      {"1e400", INT64_MAX},
      {"1e-400", 0},
      {"\"42\"", 42},
      {"\"+42\"", 42},
      {"\"-42\"", -42},
      {"\"\\u0034\"", 4},
      {"\"\"", std::nullopt},
      {"\" 4\"", {}},
      {"\"4 \"", {}},
      {"\"4.0\"", {}},
      {"\"1e3\"", {}},
      {"\"+-4\"", {}},
      {"\"0x10\"", {}},
      {"true", {}},
      {"null", {}},
      {"[1]", {}},
      {"{\"a\":1}", {}},
      {"0", 0},
      {"-0", 0},
      {"9223372036854775807", INT64_MAX},
      {"9223372036854775808", INT64_MAX},
      {"-9223372036854775809", INT64_MIN},
      {"\"9223372036854775808\"", INT64_MAX},
      {"9.3e18", INT64_MAX},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(read(text), expected) << text;
}

}  // namespace
}  // namespace quillmeter
