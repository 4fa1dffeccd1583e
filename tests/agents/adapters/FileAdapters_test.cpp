#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "agents/adapters/CountingOpener.h"
#include "agents/adapters/PiSessionUsageAdapter.h"
#include "agents/adapters/QwenOfficeUsageAdapter.h"
#include "agents/adapters/WorkBuddyUsageAdapter.h"
#include "base/Clock.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

using test::CountingOpener;
using test::TemporaryDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

void setAge(const fs::path& path, std::chrono::hours age) {
  fs::last_write_time(path, fs::file_time_type::clock::now() - age);
}

Date hoursAgo(int hours) {
  return Date::fromSeconds(SystemClock().now().seconds() - hours * 3600.0);
}

template <typename Adapter>
class AdapterTest : public ::testing::Test {
 protected:
  std::vector<AdapterUsageSession> scan(Date since = Date::distantPast()) {
    return adapter.sessions(folder.path(), since);
  }

  TemporaryDirectory folder;
  CountingOpener opener;
  Adapter adapter{opener};
};

// ---- Qwen Office

std::string completed(const std::string& fields, const std::string& data) {
  return R"({"type":"model.response.completed",)" + fields + R"("data":)" + data + "}\n";
}

using QwenOffice = AdapterTest<QwenOfficeUsageAdapter>;

TEST_F(QwenOffice, theSegmentsOfASessionAreGatheredAndEachResponseCountsOncePerSegment) {
  const std::string figures =
      R"({"input_tokens":100,"cache_creation_input_tokens":20,"output_tokens":3,"cache_read_input_tokens":4000})";
  folder.write("2026/s1/segments/0001.jsonl",
               completed(R"("ts":1700000000,"turn_id":"t1","request_id":"r1",)", figures) +
                   completed(R"("ts":1700000001,"turn_id":"t1",)", figures) +
                   completed(R"("ts":1700000002,"request_id":"r2",)", R"({"total_tokens":50})"));
  folder.write("2026/s1/segments/0002.jsonl", completed(R"("ts":"2023-11-14T22:13:20.500Z","turn_id":"t1",)", figures));
  folder.write("s0/segments/0001.jsonl", "{}\n" + completed(R"("ts":1700000000,)", R"({"output_tokens":7})") +
                                             completed(R"("ts":1700000000,)", R"({"output_tokens":7})"));
  folder.write("s0/0001.jsonl", completed(R"("ts":1700000000,)", figures));
  folder.write("s0/segments/deeper/0001.jsonl", completed(R"("ts":1700000000,)", figures));
  const auto sessions = scan();
  ASSERT_EQ(sessions.size(), 2U);
  EXPECT_EQ(sessions[0].id, "s0");
  ASSERT_EQ(sessions[0].events.size(), 2U);
  EXPECT_EQ(sessions[0].events[0].id, "1700000000.0-1");
  EXPECT_EQ(sessions[0].events[1].id, "1700000000.0-2");
  EXPECT_EQ(sessions[1].id, "s1");
  ASSERT_EQ(sessions[1].events.size(), 3U);
  EXPECT_EQ(sessions[1].events[0].metrics, (AgentTokenMetrics{4123, 120, 3, 4000, 0}));
  EXPECT_EQ(sessions[1].events[1].id, "r2");
  EXPECT_EQ(sessions[1].events[1].metrics, (AgentTokenMetrics{50, 0, 0, 0, 0}));
  EXPECT_EQ(sessions[1].events[2].date, Date{1'700'000'000'500'000});
}

TEST_F(QwenOffice, responsesWithoutFiguresMakeASessionOfZeroTokens) {
  folder.write("s/segments/1.jsonl", completed(R"("ts":1700000000,)", R"({"model":"q"})"));
  const auto sessions = scan();
  ASSERT_EQ(sessions.size(), 1U);
  EXPECT_EQ(sessions[0].metrics(), AgentTokenMetrics::zero());
  EXPECT_EQ(sessions[0].lastActivity(), Date::fromWholeSeconds(1'700'000'000));
}

TEST_F(QwenOffice, linesOfOtherKindsOrWithoutDateOrDataAreSkipped) {
  folder.write("s/segments/1.jsonl",
               std::string(R"({"type":"x","ts":1,"kind":"model.response.completed","data":{"output_tokens":1}})") +
                   "\n" + completed("", R"({"output_tokens":1})") +
                   completed(R"("ts":"never",)", R"({"output_tokens":1})") + completed(R"("ts":1,)", "[1]") +
                   completed(R"("ts":1,)", "{\"output_tokens\":1"));
  EXPECT_THAT(scan(), IsEmpty());
}

// ---- WorkBuddy

using WorkBuddy = AdapterTest<WorkBuddyUsageAdapter>;

std::string reply(const std::string& id, const std::string& fields) {
  return R"({"type":"message","role":"assistant","timestamp":1700000000,"id":")" + id + R"(",)" + fields + "}\n";
}

TEST_F(WorkBuddy, figuresAreReadInEverySpellingAndTheFirstKeyThatIsThereCounts) {
  const struct {
    std::string usage;
    AgentTokenMetrics metrics;
  } cases[] = {
      {R"({"input_tokens":1,"cache_creation_input_tokens":20,"cache_read_input_tokens":300,"output_tokens":4000,"total_tokens":9})",
       {4321, 21, 4000, 300, 0}},
      {R"({"inputTokens":1,"cacheCreationInputTokens":20,"cacheReadTokens":300,"outputTokens":4000})",
       {4321, 21, 4000, 300, 0}},
      {R"({"prompt_tokens":1,"prompt_cache_write_tokens":20,"cached_tokens":300,"completion_tokens":4000})",
       {4321, 21, 4000, 300, 0}},
      {R"({"prompt_tokens":1,"prompt_cache_hit_tokens":300})", {301, 1, 0, 300, 0}},
      {R"({"prompt_tokens":5,"input_tokens":null,"output_tokens":1})", {1, 0, 1, 0, 0}},
      {R"({"total_tokens":7})", {7, 0, 0, 0, 0}},
      {R"({"totalTokens":"8"})", {8, 0, 0, 0, 0}},
  };
  std::string text;
  for (std::size_t i = 0; i < std::size(cases); ++i)
    text += reply(std::to_string(i), R"("message":{"usage":)" + cases[i].usage + "}");
  folder.write("p/a.jsonl", text);
  const auto sessions = scan();
  ASSERT_EQ(sessions.size(), 1U);
  ASSERT_EQ(sessions[0].events.size(), std::size(cases));
  for (std::size_t i = 0; i < std::size(cases); ++i)
    EXPECT_EQ(sessions[0].events[i].metrics, cases[i].metrics) << cases[i].usage;
}

TEST_F(WorkBuddy, usageIsTakenFromTheMessageElseTheProvider) {
  const std::string one = R"({"input_tokens":1})";
  const std::string two = R"({"input_tokens":2})";
  const std::string four = R"({"input_tokens":4})";
  folder.write("p/session-1.jsonl",
               reply("a", R"("message":{"usage":)" + one + R"(},"providerData":{"usage":)" + two + "}") +
                   reply("b", R"("message":{},"providerData":{"usage":)" + two + R"(,"rawUsage":)" + four + "}") +
                   reply("c", R"("providerData":{"rawUsage":)" + four + "}") +
                   reply("c", R"("providerData":{"rawUsage":)" + four + "}") + reply("d", R"("usage":)" + four) +
                   reply("e", R"("message":{"usage":{"input_tokens":0}})"));
  folder.write("p/empty.jsonl", reply("e", R"("message":{"usage":{}})"));
  const auto sessions = scan();
  ASSERT_EQ(sessions.size(), 1U);
  EXPECT_EQ(sessions[0].id, "session-1");
  EXPECT_EQ(sessions[0].metrics().totalTokens, 7);
}

TEST_F(WorkBuddy, theIdIsTheLinesElseTheProvidersElseMadeOfDateAndIndex) {
  const std::string head = R"({"type":"message","role":"assistant","timestamp":1700000000000,)";
  const std::string usage = R"("message":{"usage":{"input_tokens":1}}})";
  folder.write("p/a.jsonl", head + R"("id":"1",)" + usage + "\n" + head + R"("providerData":{"messageId":"m"},)" +
                                usage + "\n\n" + head + usage + "\n" + head + usage);
  const auto sessions = scan();
  ASSERT_EQ(sessions.size(), 1U);
  std::vector<std::string> ids;
  for (const auto& event : sessions[0].events) ids.push_back(event.id);
  EXPECT_THAT(ids, ElementsAre("1", "m", "1700000000.0-3", "1700000000.0-4"));
}

TEST_F(WorkBuddy, filesNotTouchedSinceTheBoundAreNotOpened) {
  const std::string line = reply("a", R"("message":{"usage":{"input_tokens":1}})");
  setAge(folder.write("p/old.jsonl", line), std::chrono::hours(5));
  folder.write(".hidden/new.jsonl", line);
  EXPECT_EQ(scan(hoursAgo(4)).size(), 1U);
  EXPECT_THAT(opener.opened, ElementsAre("new.jsonl"));
}

// ---- Pi

using Pi = AdapterTest<PiSessionUsageAdapter>;

TEST_F(Pi, everyFileIsASessionOfItsAnswers) {
  const auto line = [](const std::string& id, const std::string& fields) {
    return R"({"type":"message",)" + id + R"("timestamp":"2023-11-14T22:13:21.500Z","message":{"role":"assistant",)" +
           fields + "}}\n";
  };
  folder.write(
      "--home-a--/2026_1.jsonl",
      R"({"type":"session","version":3})"
      "\n" +
          line(R"("id":"e1",)",
               R"("usage":{"input":1,"output":20,"cacheRead":300,"cacheWrite":4000},"timestamp":1700000000000)") +
          line("", R"("usage":{"totalTokens":5})") + line("", R"("usage":{"totalTokens":5})") +
          line(R"("id":"e2",)", R"("usage":{"input":1},"usageReport":{"state":"unavailable"})") +
          line(R"("id":"e3",)", R"("usage":{"input":0},"stopReason":"error")"));
  folder.write("--home-b--/2026_1.jsonl", line(R"("id":"e1",)", R"("usage":{"input":9})"));
  folder.write("--home-b--/none.jsonl", "{\"usage\":1}\n");
  folder.write(".hidden/x.jsonl", line(R"("id":"e1",)", R"("usage":{"input":9})"));
  const auto sessions = scan(Date::distantFuture());
  ASSERT_EQ(sessions.size(), 2U);
  EXPECT_EQ(sessions[0].id, "2026_1");
  const auto& events = sessions[0].events;
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events[0], (AdapterUsageEvent{"e1", Date::fromWholeSeconds(1'700'000'000), {4321, 4001, 20, 300, 0}}));
  EXPECT_EQ(events[1], (AdapterUsageEvent{"1700000001.5-2", Date{1'700'000'001'500'000}, {5, 0, 0, 0, 0}}));
  EXPECT_EQ(events[2].id, "1700000001.5-3");
  EXPECT_EQ(sessions[1].metrics().totalTokens, 9);
}

// ---- all three

template <typename Adapter>
class FileCaching : public AdapterTest<Adapter> {
 protected:
  // One response that each of the three reads, whichever folder it lies in.
  static std::string line(int id) {
    const std::string number = std::to_string(id);
    const std::string head =
        R"({"id":")" + number + R"(","turn_id":")" + number + R"(","ts":1700000000,"timestamp":1700000000,)";
    return head +
           R"("type":"message","role":"assistant","message":{"role":"assistant","usage":{"input":1,"input_tokens":1}}})"
           "\n" +
           head +
           R"("type":"model.response.completed","data":{"input_tokens":1}})"
           "\n";
  }
  std::int64_t total() {
    std::int64_t tokens = 0;
    for (const auto& session : this->scan()) tokens += session.metrics().totalTokens;
    return tokens;
  }
};

using AllThree = ::testing::Types<QwenOfficeUsageAdapter, WorkBuddyUsageAdapter, PiSessionUsageAdapter>;
class AdapterName {
 public:
  template <typename Adapter>
  static std::string GetName(int index) {
    return index == 0 ? "QwenOffice" : index == 1 ? "WorkBuddy" : "Pi";
  }
};
TYPED_TEST_SUITE(FileCaching, AllThree, AdapterName);

TYPED_TEST(FileCaching, aFileIsOpenedAgainOnlyWhenItsDateOrSizeChanged) {
  const auto first = this->folder.write("a/segments/1.jsonl", this->line(1));
  this->folder.write("b/segments/2.jsonl", this->line(1));
  EXPECT_EQ(this->total(), 2);
  EXPECT_THAT(this->opener.opened, ElementsAre("1.jsonl", "2.jsonl"));
  this->opener.opened.clear();
  EXPECT_EQ(this->total(), 2);
  EXPECT_THAT(this->opener.opened, IsEmpty());

  this->folder.write("a/segments/1.jsonl", this->line(1) + this->line(2));
  EXPECT_EQ(this->total(), 3);
  EXPECT_THAT(this->opener.opened, ElementsAre("1.jsonl"));
  setAge(first, std::chrono::hours(1));
  EXPECT_EQ(this->total(), 3);
  EXPECT_THAT(this->opener.opened, ElementsAre("1.jsonl", "1.jsonl"));

  fs::remove(first);
  EXPECT_EQ(this->total(), 1);
  this->adapter.clearCache();
  this->opener.opened.clear();
  EXPECT_EQ(this->total(), 1);
  EXPECT_THAT(this->opener.opened, ElementsAre("2.jsonl"));
}

TYPED_TEST(FileCaching, aFileThatCannotBeOpenedIsLeftOutUncountedAndTriedAgain) {
  this->folder.write("a/segments/1.jsonl", this->line(1));
  this->folder.write("a/segments/2.jsonl", this->line(2));
  this->opener.failures["1.jsonl"] = EACCES;
  EXPECT_EQ(this->total(), 1);
  EXPECT_EQ(this->adapter.unreadableSourceCount(), 0);
  this->opener.failures.clear();
  EXPECT_EQ(this->total(), 2);
}

}  // namespace
}  // namespace quillmeter
