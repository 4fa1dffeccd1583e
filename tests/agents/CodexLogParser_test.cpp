#include "agents/CodexLogParser.h"

#include <gtest/gtest.h>

#include "AgentLogs.h"
#include "agents/CodexTail.h"

namespace quillmeter {
namespace {

using test::codexLine;
using test::date;
using test::PaddedText;

std::optional<CodexRecord> record(std::string_view line) {
  return CodexLogParser::codexEvent(PaddedText(line).view());
}

std::string withUsage(std::string_view usage) {
  return R"({"timestamp":"2026-11-21T01:00:00Z","payload":{"type":"token_count","info":{"total_token_usage":)" +
         std::string(usage) + "}}}";
}

std::string withLimits(std::string_view limits) {
  return codexLine("2026-11-21T01:00:00.5Z", {10, 4, 2}, limits);
}

TEST(CodexRecord, splitsCachedFromOtherInput) {
  const auto metrics = [](std::string_view usage) { return record(withUsage(usage)).value().point.metrics; };
  EXPECT_EQ(metrics(R"({"total_tokens":110,"input_tokens":100,"cached_input_tokens":30,"output_tokens":10})"),
            (AgentTokenMetrics{110, 70, 10, 30, 0}));
  EXPECT_EQ(metrics(R"({"input_tokens":5,"cached_input_tokens":9,"total_tokens":5})"),
            (AgentTokenMetrics{5, 0, 0, 5, 0}));
  EXPECT_EQ(metrics(R"({"total_tokens":"7","input_tokens":null,"output_tokens":"x","cached_input_tokens":true})"),
            (AgentTokenMetrics{7, 0, 0, 0, 0}));
  EXPECT_EQ(metrics(R"({"total_tokens":1,"total_tokens":2.9})"), (AgentTokenMetrics{2, 0, 0, 0, 0}));
}

TEST(CodexRecord, isRecognisedWhateverTheOrderAndSpelling) {
  const auto found = record(
      R"( {"payload" : {"rate_limits":null,"info":{"other":[{}],"total_token_usage":{"total_tokens":3}},"type":"token\u005fcount"},)"
      R"("timestamp":"2026-11-21T09:00:00+08:00","ordinal":4} )"
      "\r");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->point.date, date("2026-11-21T01:00:00Z"));
  EXPECT_EQ(found->limits, CodexLimits{});
}

TEST(CodexRecord, anythingElseIsPassedOver) {
  const std::string good = codexLine("2026-11-21T01:00:00Z", {1, 0, 1});
  ASSERT_TRUE(record(good));
  for (
      const std::string& line :
      {std::string(R"(["token_count"])"),
       std::string(R"({"timestamp":"2026-11-21T01:00:00Z","payload":{"type":"token_count","info":null}})"),
       std::string(
           R"({"timestamp":"2026-11-21T01:00:00Z","payload":{"type":"other","info":{"total_token_usage":{"total_tokens":1}}}})"),
       std::string(
           R"({"timestamp":1763686800,"payload":{"type":"token_count","info":{"total_token_usage":{"total_tokens":1}}}})"),
       std::string(
           R"({"timestamp":"today","payload":{"type":"token_count","info":{"total_token_usage":{"total_tokens":1}}}})"),
       withUsage("{}"), withUsage(R"({"total_tokens":null})"), withUsage("[1]"), withUsage("7"),
       good.substr(0, good.size() - 3), good + "x", good + good, withUsage("{\"total_tokens\":1,\"x\":\"\xC3\"}"),
       withUsage("{\"total_tokens\":1,\"x\":\"\xED\xA0\x80\"}"), withUsage(R"({"total_tokens":576460752303423489})"),
       withUsage(R"({"total_tokens":1,"output_tokens":"9223372036854775808"})"),
       withUsage(R"({"total_tokens":1,"cached_input_tokens":-1e30})")}) {
    EXPECT_FALSE(record(line)) << line;
  }
  EXPECT_TRUE(record(withUsage(R"({"total_tokens":576460752303423488})")));
}

TEST(CodexLimits, aWindowIsPlacedByItsLength) {
  const auto limits =
      record(withLimits(R"({"primary":{"used_percent":25,"window_minutes":10080,"resets_at":1795651200},)"
                        R"("secondary":{"used_percent":"12.5","window_minutes":"300"}})"))
          .value()
          .limits;
  EXPECT_EQ(limits.weeklyUsed, 0.25);
  EXPECT_EQ(limits.weeklyResetAt, Date::fromWholeSeconds(1795651200));
  EXPECT_EQ(limits.primaryUsed, 0.125);
  EXPECT_EQ(limits.primaryResetAt, std::nullopt);
  EXPECT_EQ(limits.observedAt, date("2026-11-21T01:00:00.5Z"));
}

TEST(CodexLimits, lengthsDefaultByRowAndUnknownOnesAreIgnored) {
  const auto defaults =
      record(withLimits(R"({"primary":{"used_percent":1},"secondary":{"used_percent":2,"window_minutes":null}})"))
          .value()
          .limits;
  EXPECT_EQ(defaults.primaryUsed, 0.01);
  EXPECT_EQ(defaults.weeklyUsed, 0.02);
  const auto others =
      record(withLimits(R"({"primary":{"used_percent":1,"window_minutes":60},"secondary":7})")).value().limits;
  EXPECT_EQ(others.primaryUsed, std::nullopt);
  EXPECT_EQ(others.weeklyUsed, std::nullopt);
  EXPECT_EQ(others.observedAt, date("2026-11-21T01:00:00.5Z"));
}

TEST(CodexLimits, usedPercentIsClampedOrRefused) {
  const std::vector<std::pair<const char*, std::optional<double>>> cases = {{"150", 1.0},
                                                                            {"0", 0.0},
                                                                            {"\"1e1\"", 0.1},
                                                                            {"-5", std::nullopt},
                                                                            {"\"abc\"", std::nullopt},
                                                                            {"\"nan\"", std::nullopt},
                                                                            {"\"inf\"", std::nullopt},
                                                                            {"null", std::nullopt},
                                                                            {"true", std::nullopt},
                                                                            {"\" 5\"", std::nullopt}};
  for (const auto& [percent, expected] : cases) {
    EXPECT_EQ(
        record(withLimits("{\"primary\":{\"used_percent\":" + std::string(percent) + "}}")).value().limits.primaryUsed,
        expected)
        << percent;
  }
}

class CodexFile : public testing::Test {
 protected:
  CachedCodexFile parse(std::string_view bytes, bool needsTimeline) {
    const auto path = folder_.write("log.jsonl", bytes);
    CodexLogParser parser(opener_);
    return parser
        .parse({path.string(), date("2026-11-21T02:00:00Z"), static_cast<std::int64_t>(bytes.size())}, needsTimeline)
        .value();
  }

  test::TemporaryDirectory folder_;
  SystemFileOpener opener_;
};

TEST_F(CodexFile, theNewestLimitsWinAndTiesKeepTheEarlierRecord) {
  const auto limits = [](int percent) { return "{\"primary\":{\"used_percent\":" + std::to_string(percent) + "}}"; };
  const CachedCodexFile file =
      parse(codexLine("2026-11-21T01:00:00Z", {1, 0, 0}, limits(10)) +
                codexLine("2026-11-21T01:00:05Z", {2, 0, 0}, limits(20)) +
                codexLine("2026-11-21T01:00:05Z", {3, 0, 0}, limits(30)) +
                codexLine("2026-11-21T01:00:04Z", {4, 0, 0}, limits(40)) + codexLine("2026-11-21T01:00:09Z", {5, 0, 0}),
            true);
  EXPECT_EQ(file.limits.primaryUsed, 0.2);
  EXPECT_EQ(file.points.value().size(), 5u);
  EXPECT_EQ(file.latest.value().metrics.totalTokens, 5);
}

TEST_F(CodexFile, withoutTimelineOnlyTheLastRecordIsRead) {
  const std::string last = codexLine("2026-11-21T01:00:00Z", {9, 0, 0}, R"({"primary":{"used_percent":5}})");
  for (const std::string& tail : {std::string(), std::string("{\"payload\":{\"type\":\"token_count\"}}\n"),
                                  std::string("torn \"token_count\""), std::string("\n\n"), std::string("plain\n")}) {
    const CachedCodexFile file =
        parse(codexLine("2026-11-21T01:30:00Z", {3, 0, 0}, R"({"primary":{"used_percent":9}})") + last + tail, false);
    EXPECT_FALSE(file.points);
    EXPECT_EQ(file.latest.value().metrics.totalTokens, 9) << tail;
    EXPECT_EQ(file.limits.primaryUsed, 0.05);
  }
  EXPECT_FALSE(parse("", false).latest);
  EXPECT_FALSE(parse("\"token_count\"", false).latest);
  EXPECT_TRUE(parse(last.substr(0, last.size() - 1), false).latest);
}

// The record at every distance from the borders of the chunks that the search reads.
TEST_F(CodexFile, theTailSearchFindsARecordWhereverTheChunksCutIt) {
  const std::string line = codexLine("2026-11-21T01:00:00Z", {9, 0, 0});
  const auto size = static_cast<std::int64_t>(line.size());
  for (const std::int64_t border : {65'536, 65'536 + 262'144}) {
    for (std::int64_t behind = border - size - 2; behind <= border + 2; behind += behind < border - 20 ? 7 : 1) {
      std::string filler(static_cast<std::size_t>(behind), 'x');
      filler.back() = '\n';
      ASSERT_TRUE(parse("first line\n" + line + filler, false).latest) << behind;
      ASSERT_TRUE(parse(line + filler, false).latest) << behind;
    }
  }
}

TEST_F(CodexFile, theTailWindowGrowsToSixtyFourMebibytesAndNoFurther) {
  constexpr std::int64_t mebibyte = 1'048'576;
  EXPECT_EQ(CodexTail::searchFloor(5), 0);
  EXPECT_EQ(CodexTail::searchFloor(mebibyte), 0);
  EXPECT_EQ(CodexTail::searchFloor(3 * mebibyte), 0);
  EXPECT_EQ(CodexTail::searchFloor(16 * mebibyte + 1), 0);
  EXPECT_EQ(CodexTail::searchFloor(64 * mebibyte), 0);
  EXPECT_EQ(CodexTail::searchFloor(100 * mebibyte), 36 * mebibyte);

  const std::string line = codexLine("2026-11-21T01:00:00Z", {9, 0, 0});
  const auto foundWithBehind = [&](std::int64_t behind) {  // a sparse file: nothing but a hole behind the record
    const auto path = folder_.write("sparse.jsonl", "other\n" + line);
    const std::int64_t size = static_cast<std::int64_t>(line.size()) + 6 + behind;
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size));
    CodexLogParser parser(opener_);
    return parser.parse({path.string(), {}, size}, false).value().latest.has_value();
  };
  EXPECT_TRUE(foundWithBehind(2 * mebibyte));
  EXPECT_TRUE(foundWithBehind(20 * mebibyte));
  EXPECT_TRUE(foundWithBehind(64 * mebibyte - static_cast<std::int64_t>(line.size())));
  EXPECT_FALSE(foundWithBehind(64 * mebibyte));
}

UsageTimeline points(const std::vector<std::pair<const char*, std::int64_t>>& list) {
  UsageTimeline timeline;
  for (const auto& [when, total] : list) timeline.append({date(when), {total, total / 2, total - total / 2, 0, 0}});
  return timeline;
}

TEST(CodexUsage, deltaCountsWhatWasUsedSinceTheStart) {
  const Date start = date("2026-11-21T00:00:00Z");
  EXPECT_EQ(codexDelta(points({}), start), AgentTokenMetrics{});
  EXPECT_EQ(codexDelta(points({{"2026-11-20T23:00:00Z", 10}}), start), AgentTokenMetrics{});
  EXPECT_EQ(codexDelta(points({{"2026-11-21T00:00:00Z", 10}}), start).totalTokens, 10);
  EXPECT_EQ(
      codexDelta(points({{"2026-11-20T22:00:00Z", 4}, {"2026-11-20T23:00:00Z", 10}, {"2026-11-21T01:00:00Z", 16}}),
                 start),
      (AgentTokenMetrics{6, 3, 3, 0, 0}));
  // A restart below the baseline gives nothing; dates out of order count by their place in the file.
  EXPECT_EQ(codexDelta(points({{"2026-11-20T23:00:00Z", 10}, {"2026-11-21T01:00:00Z", 4}}), start),
            AgentTokenMetrics{});
  EXPECT_EQ(codexDelta(points({{"2026-11-21T01:00:00Z", 4}, {"2026-11-20T23:00:00Z", 6}, {"2026-11-21T02:00:00Z", 10}}),
                       start)
                .totalTokens,
            4);
}

TEST(CodexUsage, eventsAreTheStepsBetweenPoints) {
  const UsageTimeline timeline = points({{"2026-11-20T23:00:00Z", 10},
                                         {"2026-11-21T01:00:00Z", 16},
                                         {"2026-11-21T02:00:00Z", 2},
                                         {"2026-11-21T03:00:00Z", 8}});
  std::string totals;
  for (const AgentUsageEvent& event : codexEvents(timeline, date("2026-11-21T00:00:00Z")))
    totals += std::to_string(event.metrics.totalTokens) + " ";
  EXPECT_EQ(totals, "6 0 6 ");
  EXPECT_EQ(codexEvents(timeline, date("2026-11-20T00:00:00Z")).front().metrics.totalTokens, 10);
}

}  // namespace
}  // namespace quillmeter
