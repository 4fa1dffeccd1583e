#include "agents/ClaudeLogParser.h"

#include <gtest/gtest.h>

#include "AgentLogs.h"
#include "agents/KeySet.h"

namespace quillmeter {
namespace {

using test::claudeLine;
using test::date;

class ClaudeFile : public testing::Test {
 protected:
  CachedClaudeFile parse(std::string_view bytes) {
    const auto path = folder_.write("log.jsonl", bytes);
    return parser_.parse({path.string(), date("2026-11-21T02:00:00Z"), static_cast<std::int64_t>(bytes.size())})
        .value();
  }
  std::int64_t total(std::string_view bytes) { return parse(bytes).sessionMetrics.totalTokens; }

  test::TemporaryDirectory folder_;
  SystemFileOpener opener_;
  ClaudeLogParser parser_{opener_};
};

// A reply with 3 tokens and the given fields in front.
std::string reply(std::string_view fields) {
  return "{" + std::string(fields) +
         R"(,"type":"assistant","message":{"usage":{"input_tokens":1,"output_tokens":2}}})" + "\n";
}

TEST_F(ClaudeFile, cacheWritesAreInputAndOnlyCacheReadsAreCached) {
  const CachedClaudeFile file = parse(claudeLine("2026-11-21T01:00:00Z", "a", {1, 20, 300, 4000}));
  EXPECT_EQ(file.sessionMetrics, (AgentTokenMetrics{4321, 21, 4000, 300, 0}));
  EXPECT_EQ(file.lastActivity, date("2026-11-21T01:00:00Z"));
}

TEST_F(ClaudeFile, theLinesOfOneRequestCountOnce) {
  const std::string line = claudeLine("2026-11-21T01:00:00Z", "a", {1, 0, 0, 9});
  const CachedClaudeFile file = parse(line + line + claudeLine("2026-11-21T01:00:01Z", "b", {2, 0, 0, 0}) +
                                      claudeLine("2026-11-21T01:00:02Z", "a", {5, 0, 0, 50}));
  EXPECT_EQ(file.events.size(), 2u);
  EXPECT_EQ(file.sessionMetrics.totalTokens, 12);
  EXPECT_EQ(file.lastActivity, date("2026-11-21T01:00:01Z"));
}

TEST_F(ClaudeFile, theKeyIsRequestIdElseUuidElseTheMoment) {
  const std::string when = R"("timestamp":"2026-11-21T01:00:00Z")";
  EXPECT_EQ(total(reply(when + R"(,"requestId":"a","uuid":"1")") + reply(when + R"(,"requestId":"a","uuid":"2")")), 3);
  EXPECT_EQ(total(reply(when + R"(,"requestId":"a","uuid":"1")") + reply(when + R"(,"requestId":"b","uuid":"1")")), 6);
  EXPECT_EQ(total(reply(when + R"(,"requestId":null,"uuid":"1")") + reply(when + R"(,"requestId":7,"uuid":"1")")), 3);
  EXPECT_EQ(total(reply(when + R"(,"requestId":"\u0061")") + reply(when + R"(,"requestId":"a")")), 3);
  EXPECT_EQ(total(reply(when + R"(,"requestId":"")") + reply(when + R"(,"requestId":"")")), 3);
  EXPECT_EQ(total(reply(when) + reply(when) + reply(when)), 9);
  EXPECT_EQ(total(reply(when + R"(,"requestId":")" + std::string(9000, 'x') + "1\"") +
                  reply(when + R"(,"requestId":")" + std::string(9000, 'x') + "2\"")),
            6);
}

// The id is looked for at the end of the line first; what only looks like one there must not hide a reply.
TEST_F(ClaudeFile, whatLooksLikeAnIdAtTheEndOfALineHidesNothing) {
  const std::string head =
      R"({"timestamp":"2026-11-21T01:00:00Z","message":{"usage":{"output_tokens":3}},"type":"assistant",)";
  const std::string first = head + R"("requestId":"a"})" + "\n";
  for (const char* end :
       {R"("requestId":"b","note":"x\",\"requestId\":\"a"})",
        R"("requestId":"b","note":"\\","n":"\",\"type\":\"user"})",
        R"("requestId":"b","in":{"requestId":"a","type":"user"}})", R"("requestId":"b","in":["type","user"]})",
        R"("requestId":"a","requestId":"b"})", R"("requestId":"a","requestId":null,"uuid":"u"})",
        R"("requestId":"a","requestId":7})", R"("requestId" : "b" , "x" : 1.5e3 } )", R"("requestId":"\u0062"})",
        R"("uuid":"b","xrequestId":"a"})"}) {
    EXPECT_EQ(total(first + head + end + "\n"), 6) << end;
  }
  EXPECT_EQ(total(head + R"("requestId":"null"})" + "\n" + head + R"("requestId":null})" + "\n"), 6);
  for (const char* end : {R"("requestId":"a","x":false,"n":-1.5})", R"("requestId":"b","requestId":"a"})",
                          R"("requestId":"a","in":{}})", R"("requestId":"a"} )", R"("requestId":"b","type":"user"})"}) {
    EXPECT_EQ(total(first + head + end + "\n"), 3) << end;
  }
}

TEST_F(ClaudeFile, anEmptyUsageIsNoEventButTakesItsKey) {
  const CachedClaudeFile file =
      parse(claudeLine("2026-11-21T01:00:00Z", "a", {1, 0, 0, 0}) + claudeLine("2026-11-21T05:00:00Z", "zero", {}) +
            claudeLine("2026-11-21T06:00:00Z", "zero", {7, 0, 0, 0}));
  EXPECT_EQ(file.events.size(), 1u);
  EXPECT_EQ(file.lastActivity, date("2026-11-21T01:00:00Z"));
  EXPECT_FALSE(parse(claudeLine("2026-11-21T05:00:00Z", "zero", {})).lastActivity);
}

TEST_F(ClaudeFile, otherLinesAreSkippedAndTheRestStillCounts) {
  const std::string good = claudeLine("2026-11-21T01:00:00Z", "good", {1, 0, 0, 1});
  for (
      const std::string& bad :
      {std::string(
           R"({"type":"user","timestamp":"2026-11-21T01:00:00Z","message":{"role":"assistant","usage":{"input_tokens":5}}})"),
       std::string(R"({"type":"assistant","timestamp":"2026-11-21T01:00:00Z","message":{"usage":null}})"),
       std::string(
           R"({"type":"assistant","timestamp":"2026-11-21T01:00:00Z","message":"usage","usage":{"input_tokens":5}})"),
       std::string(R"({"type":"assistant","timestamp":1763686800000,"message":{"usage":{"input_tokens":5}}})"),
       std::string(
           R"({"type":["assistant"],"timestamp":"2026-11-21T01:00:00Z","message":{"usage":{"input_tokens":5}}})"),
       std::string(R"("assistant")"), std::string(R"({"type":"assistant")"), std::string(10'000, '[') + "\"assistant\"",
       good.substr(0, good.size() - 2), good.substr(1, good.size() - 2),
       good.substr(0, good.size() - 1) + good.substr(0, 40),
       claudeLine("2026-11-21T01:00:00Z", "b", {1, 0, 0, 0}, "cut \xE4\xBD"),
       claudeLine("2026-11-21T01:00:00Z", "b", {1, 0, 0, 0}, "\x01"),
       claudeLine("2026-11-21T01:00:00Z", "b", {1, 0, 0, INT64_MAX}),
       claudeLine("2026-11-21T01:00:00Z", "b", {(std::int64_t{1} << 59) + 1, 0, 0, 0})}) {
    EXPECT_EQ(total(bad + "\n" + good), 2) << bad.substr(0, 200);
  }
}

TEST_F(ClaudeFile, oddCountersAreReadOrCountAsZero) {
  const auto usage = [this](std::string_view counters) {
    return parse(R"({"type":"assistant","timestamp":"2026-11-21T01:00:00Z","message":{"usage":)" +
                 std::string(counters) + "}}\n")
        .sessionMetrics;
  };
  EXPECT_EQ(
      usage(
          R"({"input_tokens":"5","output_tokens":2.9,"cache_read_input_tokens":null,"cache_creation_input_tokens":"x"})"),
      (AgentTokenMetrics{7, 5, 2, 0, 0}));
  EXPECT_EQ(usage(R"({"input_tokens":-3,"output_tokens":5})"), (AgentTokenMetrics{2, -3, 5, 0, 0}));
  EXPECT_EQ(usage(R"({"input_tokens":-3,"output_tokens":3})"), AgentTokenMetrics{});
  EXPECT_EQ(usage(R"({"input_tokens":1,"input_tokens":4})"), (AgentTokenMetrics{4, 4, 0, 0, 0}));
}

TEST_F(ClaudeFile, lineEndsAreReadAsTheyCome) {
  std::string line = claudeLine("2026-11-21T01:00:00Z", "a", {1, 0, 0, 0});
  line.pop_back();
  EXPECT_EQ(total(line), 1);
  EXPECT_EQ(total(line + "\r\n" + claudeLine("2026-11-21T01:00:00Z", "b", {2, 0, 0, 0})), 3);
}

TEST_F(ClaudeFile, whatCannotBeSummedIsMarkedAndHoldsNoEvents) {
  const std::int64_t most = std::int64_t{1} << 59;
  std::string bytes;
  for (int i = 0; i < 8; ++i) bytes += claudeLine("2026-11-21T01:00:00Z", std::to_string(i), {most, 0, 0, 0});
  EXPECT_TRUE(parse(bytes).magnitude.isSummable());
  bytes += claudeLine("2026-11-21T01:00:00Z", "9", {1, 0, 0, 0});
  const CachedClaudeFile file = parse(bytes);
  EXPECT_FALSE(file.magnitude.isSummable());
  EXPECT_TRUE(file.events.empty());
}

TEST(KeySet, isExactWhileItGrows) {
  KeySet set;
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 20'000; ++i) ASSERT_TRUE(set.insert("req_" + std::to_string(i))) << i;
    for (int i = 0; i < 20'000; ++i) ASSERT_FALSE(set.insert("req_" + std::to_string(i))) << i;
    EXPECT_EQ(set.size(), 20'000u);
    set.clear();
  }
}

TEST(UsageTimeline, restoresEveryEvent) {
  const std::int64_t most = std::int64_t{1} << 61;
  const std::vector<AgentUsageEvent> events = {{Date{0}, {}},
                                               {date("2026-11-21T01:00:00.123456Z"), {6, 1, 2, 3, 0}},
                                               {date("2026-11-21T00:59:00Z"), {most, -most, most, -1, 0}},
                                               {Date::distantPast(), {-1, 0, 0, most, 0}},
                                               {Date::distantFuture(), {0, most, most, most, 0}}};
  UsageTimeline timeline;
  for (const AgentUsageEvent& event : events) timeline.append(event);
  EXPECT_EQ(timeline.events(), events);
  EXPECT_EQ(timeline.size(), events.size());
}

}  // namespace
}  // namespace quillmeter
