#include "agents/AgentUsageCollector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AgentLogs.h"

namespace quillmeter {
namespace {

using test::claudeLine;
using test::codexLine;
using test::date;
using test::sourceAt;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr AgentLogProvider codex = AgentLogProvider::codex;
constexpr AgentLogProvider claude = AgentLogProvider::claude;

// Gives what the test puts into it.
class ScriptedAdapter final : public AgentUsageAdapter {
 public:
  struct Script {
    std::vector<AdapterUsageSession> sessions;
    int unreadable = 0;
    std::vector<std::pair<std::filesystem::path, Date>> calls;
    int cleared = 0;
  };
  explicit ScriptedAdapter(Script& script) : script_(script) {}
  std::vector<AdapterUsageSession> sessions(const std::filesystem::path& root, Date since) override {
    script_.calls.emplace_back(root, since);
    return script_.sessions;
  }
  void clearCache() override { ++script_.cleared; }
  int unreadableSourceCount() const override { return script_.unreadable; }

 private:
  Script& script_;
};

std::int64_t sumOf(const std::vector<AgentUsageBucket>& buckets) {
  std::int64_t sum = 0;
  for (const AgentUsageBucket& bucket : buckets) sum += bucket.metrics.totalTokens;
  return sum;
}

// A home with one folder an agent, seen at noon of Saturday 2026-11-21 in UTC, weeks from Monday.
class Collector : public testing::Test {
 protected:
  void codexFile(const std::string& relative, std::string_view modified, std::string_view bytes) {
    test::setModified(folder_.write("codex/" + relative, bytes), date(modified));
  }
  void claudeFile(const std::string& relative, std::string_view modified, std::string_view bytes) {
    test::setModified(folder_.write("claude/" + relative, bytes), date(modified));
  }
  AgentUsageSnapshot collect(AgentUsageCollector& collector, std::string_view now = "2026-11-21T12:00:00Z") {
    return collector.collect({sourceAt(codex, folder_.path() / "codex"), sourceAt(claude, folder_.path() / "claude")},
                             date(now));
  }
  AgentUsageSnapshot collect(std::string_view now = "2026-11-21T12:00:00Z") { return collect(collector_, now); }

  test::TemporaryDirectory folder_;
  test::RecordingOpener opener_;
  AgentUsageCollector collector_{opener_, Calendar::utc(), {}};
};

TEST_F(Collector, aCodexSessionCountsInEachRangeWhatItUsedThere) {
  codexFile("2026/11/20/rollout-a.jsonl", "2026-11-21T02:00:00Z",
            codexLine("2026-11-20T22:00:00Z", {10, 0, 0}) + codexLine("2026-11-20T23:00:00Z", {30, 0, 0}) +
                codexLine("2026-11-21T01:00:00Z", {100, 40, 5}));
  const AgentUsageSnapshot snapshot = collect();
  const AgentProviderUsage& usage = snapshot.providers.at(0);
  EXPECT_EQ(usage.todayMetrics, (AgentTokenMetrics{75, 30, 5, 40, 1}));
  EXPECT_EQ(usage.weekMetrics, (AgentTokenMetrics{105, 60, 5, 40, 1}));
  EXPECT_EQ(usage.monthMetrics, usage.weekMetrics);
  EXPECT_EQ(usage.currentSessionMetrics, (AgentTokenMetrics{105, 60, 5, 40, 1}));
  EXPECT_EQ(snapshot.hourlyUsage.at(1).metrics.totalTokens, 75);
  EXPECT_EQ(snapshot.weeklyUsage.at(4).metrics.totalTokens, 30);
  EXPECT_EQ(snapshot.monthlyUsage.at(20).metrics.totalTokens, 75);
}

TEST_F(Collector, aSessionOfTheMonthBeforeIsSeenWhenItRanOn) {
  codexFile("2026/10/31/ran-on.jsonl", "2026-11-01T00:10:00Z",
            codexLine("2026-10-31T23:50:00Z", {10, 0, 0}) + codexLine("2026-11-01T00:05:00Z", {15, 0, 0}));
  codexFile("2026/10/31/ended.jsonl", "2026-10-31T20:00:00Z", codexLine("2026-10-31T19:00:00Z", {1000, 0, 0}));
  codexFile("2026/10/30/older.jsonl", "2026-10-30T23:59:59.9Z", "never opened");
  const AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.monthMetrics, (AgentTokenMetrics{5, 5, 0, 0, 1}));
  EXPECT_EQ(snapshot.weekMetrics, AgentTokenMetrics{});
  EXPECT_EQ(sumOf(snapshot.monthlyUsage), 5);
  EXPECT_THAT(opener_.opened, UnorderedElementsAre("ran-on.jsonl", "ended.jsonl"));
}

// Read without a timeline, a session gives its bar its whole usage; one written on another day than it began gets one
// bar a day.
TEST_F(Collector, theBarsOfTheMonthAddUpToItsTotalBeforeAndAfterARestart) {
  codexFile("2026/11/10/oneday.jsonl", "2026-11-10T20:00:00Z",
            codexLine("2026-11-10T10:00:00Z", {10, 0, 0}) + codexLine("2026-11-10T19:00:00Z", {40, 0, 0}));
  codexFile("2026/11/11/twodays.jsonl", "2026-11-12T01:00:00Z",
            codexLine("2026-11-11T23:00:00Z", {100, 0, 0}) + codexLine("2026-11-12T00:30:00Z", {300, 0, 0}));
  codexFile("2026/11/21/today.jsonl", "2026-11-21T11:00:00Z",
            codexLine("2026-11-21T09:00:00Z", {1000, 0, 0}) + codexLine("2026-11-21T10:00:00Z", {3000, 0, 0}));
  const AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.monthMetrics.totalTokens, 3340);
  EXPECT_EQ(sumOf(snapshot.monthlyUsage), 3340);
  EXPECT_EQ(snapshot.monthlyUsage.at(9).metrics.totalTokens, 40);
  EXPECT_EQ(snapshot.monthlyUsage.at(10).metrics.totalTokens, 100);
  EXPECT_EQ(snapshot.monthlyUsage.at(11).metrics.totalTokens, 200);
  EXPECT_EQ(snapshot.hourlyUsage.at(10).metrics.totalTokens, 2000);

  const AgentUsageSnapshot nextDay = collect("2026-11-22T12:00:00Z");
  AgentUsageCollector restarted(opener_, Calendar::utc(), {});
  EXPECT_EQ(collect(restarted, "2026-11-22T12:00:00Z"), nextDay);
  EXPECT_EQ(sumOf(nextDay.monthlyUsage), 3340);
}

TEST_F(Collector, aSessionOutsideDayFoldersBeganOnItsLastDay) {
  codexFile("loose.jsonl", "2026-11-21T11:00:00Z", codexLine("2026-11-21T10:00:00Z", {7, 0, 0}));
  codexFile("2026/02/30/nosuchday.jsonl", "2026-11-20T11:00:00Z", codexLine("2026-11-20T10:00:00Z", {5, 0, 0}));
  codexFile("2026/November/20/named.jsonl", "2026-11-15T11:00:00Z", codexLine("2026-11-15T10:00:00Z", {3, 0, 0}));
  const AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.todayMetrics.totalTokens, 7);
  EXPECT_EQ(snapshot.weekMetrics.totalTokens, 12);
  EXPECT_EQ(snapshot.monthMetrics.totalTokens, 15);
}

TEST_F(Collector, claudeRepliesCountByTheirOwnDates) {
  claudeFile("-home/a.jsonl", "2026-11-21T11:58:00Z",
             claudeLine("2026-10-31T23:59:59Z", "1", {1, 0, 0, 0}) +
                 claudeLine("2026-11-01T00:00:00Z", "2", {20, 0, 0, 0}) +
                 claudeLine("2026-11-16T00:00:00Z", "3", {300, 0, 0, 0}) +
                 claudeLine("2026-11-21T11:57:00Z", "4", {4000, 0, 0, 0}));
  claudeFile("-home/b.JSONL", "2026-11-16T01:00:00Z", claudeLine("2026-11-16T00:30:00Z", "3", {50'000, 0, 0, 0}));
  claudeFile("-home/old.jsonl", "2026-10-31T23:59:59Z", "never opened");
  claudeFile("-home/.hidden.jsonl", "2026-11-01T00:00:00Z",
             claudeLine("2026-11-01T00:00:00Z", "1", {600'000, 0, 0, 0}));
  const AgentUsageSnapshot snapshot = collect();
  const AgentProviderUsage& usage = snapshot.providers.at(1);
  EXPECT_EQ(usage.todayMetrics, (AgentTokenMetrics{4000, 4000, 0, 0, 1}));
  EXPECT_EQ(usage.weekMetrics, (AgentTokenMetrics{54'300, 54'300, 0, 0, 2}));
  EXPECT_EQ(usage.monthMetrics, (AgentTokenMetrics{654'320, 654'320, 0, 0, 3}));
  EXPECT_EQ(usage.currentSessionMetrics.totalTokens, 4321);
  EXPECT_EQ(sumOf(snapshot.monthlyUsage), 654'320);
  ASSERT_EQ(snapshot.recentSessions.size(), 1u);
  EXPECT_EQ(snapshot.recentSessions[0].id, "claude:" + (folder_.path() / "claude/-home/a.jsonl").string());
  EXPECT_EQ(snapshot.recentSessions[0].sessionID, "a");
  EXPECT_EQ(snapshot.recentSessions[0].totalTokens, 4321);
}

TEST_F(Collector, theWeekReachesIntoTheMonthBeforeButItsBarsDoNot) {
  claudeFile(
      "a.jsonl", "2026-12-01T08:00:00Z",
      claudeLine("2026-11-30T08:00:00Z", "1", {5, 0, 0, 0}) + claudeLine("2026-12-01T08:00:00Z", "2", {70, 0, 0, 0}));
  const AgentUsageSnapshot snapshot = collect("2026-12-01T12:00:00Z");  // a Tuesday
  EXPECT_EQ(snapshot.weekMetrics.totalTokens, 75);
  EXPECT_EQ(snapshot.weeklyUsage.at(0).start, date("2026-11-30T00:00:00Z"));
  EXPECT_EQ(sumOf(snapshot.weeklyUsage), 70);
  EXPECT_EQ(snapshot.monthlyUsage.size(), 31u);
}

TEST_F(Collector, usageAfterNowCountsInTodayAndIsNotActive) {
  claudeFile("a.jsonl", "2026-11-21T12:00:00Z", claudeLine("2026-11-23T08:00:00Z", "1", {5, 0, 0, 0}));
  const AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.todayMetrics.totalTokens, 5);
  EXPECT_EQ(sumOf(snapshot.hourlyUsage), 0);
  EXPECT_EQ(snapshot.monthlyUsage.at(22).metrics.totalTokens, 5);
  EXPECT_THAT(snapshot.recentSessions, IsEmpty());
}

TEST_F(Collector, theNewestLimitsOfAllFilesAreShown) {
  const auto limits = [](int percent) {
    return "{\"primary\":{\"used_percent\":" + std::to_string(percent) + ",\"resets_at\":1795651200}}";
  };
  codexFile("2026/11/21/a.jsonl", "2026-11-21T11:00:00Z", codexLine("2026-11-21T10:00:00Z", {1, 0, 0}, limits(50)));
  codexFile("2026/11/20/b.jsonl", "2026-11-20T11:00:00Z", codexLine("2026-11-21T10:00:01Z", {1, 0, 0}, limits(20)));
  codexFile("2026/11/19/c.jsonl", "2026-11-21T11:30:00Z", codexLine("2026-11-21T10:00:02Z", {1, 0, 0}));
  // Of two files that say something at the same time, the one changed later is looked at first.
  codexFile("2026/11/20/d.jsonl", "2026-11-20T10:59:00Z", codexLine("2026-11-21T10:00:01Z", {1, 0, 0}, limits(90)));
  const AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.primaryLimitUsed, 0.2);
  EXPECT_EQ(snapshot.primaryResetAt, Date::fromWholeSeconds(1795651200));
  EXPECT_EQ(snapshot.weeklyLimitUsed, std::nullopt);
  EXPECT_EQ(snapshot.limitsObservedAt, date("2026-11-21T10:00:01Z"));
}

TEST_F(Collector, anUnchangedFileIsNotOpenedAgain) {
  codexFile("2026/11/21/today.jsonl", "2026-11-21T11:00:00Z", codexLine("2026-11-21T10:00:00Z", {1, 0, 0}));
  codexFile("2026/11/19/old.jsonl", "2026-11-19T11:00:00Z", codexLine("2026-11-19T10:00:00Z", {1, 0, 0}));
  claudeFile("a.jsonl", "2026-11-21T11:00:00Z", claudeLine("2026-11-21T10:00:00Z", "1", {1, 0, 0, 0}));
  claudeFile("empty.jsonl", "2026-11-21T11:00:00Z", "");
  const AgentUsageSnapshot first = collect();
  EXPECT_EQ(opener_.takeOpened().size(), 4u);
  EXPECT_EQ(collect(), first);
  EXPECT_THAT(opener_.takeOpened(), IsEmpty());

  // Same size, other date; same date, other size; gone and back.
  claudeFile("a.jsonl", "2026-11-21T11:00:01Z", claudeLine("2026-11-21T10:00:00Z", "1", {2, 0, 0, 0}));
  codexFile("2026/11/19/old.jsonl", "2026-11-19T11:00:00Z", codexLine("2026-11-19T10:00:00Z", {10, 0, 0}));
  EXPECT_EQ(collect().monthMetrics.totalTokens, 13);
  EXPECT_THAT(opener_.takeOpened(), UnorderedElementsAre("a.jsonl", "old.jsonl"));
  std::filesystem::rename(folder_.path() / "claude/a.jsonl", folder_.path() / "a.jsonl");
  EXPECT_EQ(collect().monthMetrics.totalTokens, 11);
  std::filesystem::rename(folder_.path() / "a.jsonl", folder_.path() / "claude/a.jsonl");
  EXPECT_EQ(collect().monthMetrics.totalTokens, 13);
  EXPECT_THAT(opener_.takeOpened(), ElementsAre("a.jsonl"));

  std::filesystem::rename(folder_.path() / "codex/2026/11/19/old.jsonl", folder_.path() / "old.jsonl");
  EXPECT_EQ(collect().monthMetrics.totalTokens, 3);
  std::filesystem::rename(folder_.path() / "old.jsonl", folder_.path() / "codex/2026/11/19/old.jsonl");
  EXPECT_EQ(collect().monthMetrics.totalTokens, 13);
  EXPECT_THAT(opener_.takeOpened(), ElementsAre("old.jsonl"));

  collector_.clearCaches();
  EXPECT_EQ(collect().monthMetrics.totalTokens, 13);
  EXPECT_EQ(opener_.takeOpened().size(), 4u);
}

TEST_F(Collector, aFileReadByItsTailIsReadInFullOnceATimelineIsNeeded) {
  codexFile("2026/11/19/a.jsonl", "2026-11-19T11:00:00Z",
            codexLine("2026-11-19T10:00:00Z", {1, 0, 0}) + codexLine("2026-11-19T10:30:00Z", {4, 0, 0}));
  EXPECT_EQ(collect().monthlyUsage.at(18).metrics.totalTokens, 4);
  opener_.takeOpened();
  const AgentUsageSnapshot asOfThen = collect("2026-11-19T12:00:00Z");
  EXPECT_THAT(opener_.takeOpened(), ElementsAre("a.jsonl"));
  EXPECT_EQ(asOfThen.hourlyUsage.at(10).metrics.totalTokens, 4);
}

TEST_F(Collector, whatCannotBeReadIsCountedAndNamedAndTheRestIsSummed) {
  codexFile("2026/11/21/bad.jsonl", "2026-11-21T11:00:00Z", codexLine("2026-11-21T10:00:00Z", {1, 0, 0}));
  codexFile("2026/11/21/good.jsonl", "2026-11-21T11:00:00Z", codexLine("2026-11-21T10:00:00Z", {20, 0, 0}));
  claudeFile("good.jsonl", "2026-11-21T11:00:00Z", claudeLine("2026-11-21T10:00:00Z", "1", {300, 0, 0, 0}));
  opener_.failures["bad.jsonl"] = EACCES;
  AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.todayMetrics.totalTokens, 320);
  EXPECT_EQ(snapshot.providers.at(0).unreadableSourceCount, 1);
  EXPECT_EQ(snapshot.providers.at(1).unreadableSourceCount, 0);
  EXPECT_EQ(snapshot.scanStatus, AgentScanStatus::incompleteLogs({"Codex"}));
  ASSERT_EQ(collector_.unreadableLogs().size(), 1u);
  EXPECT_EQ(collector_.unreadableLogs()[0].error, EACCES);
  EXPECT_EQ(collector_.unreadableLogs()[0].path, (folder_.path() / "codex/2026/11/21/bad.jsonl").string());

  opener_.failures.clear();
  snapshot = collect();
  EXPECT_EQ(snapshot.todayMetrics.totalTokens, 321);
  EXPECT_EQ(snapshot.scanStatus, std::nullopt);
  EXPECT_THAT(collector_.unreadableLogs(), IsEmpty());
}

TEST_F(Collector, countersThatCannotBeSummedAreLeftOut) {
  const std::int64_t most = std::int64_t{1} << 59;
  for (int i = 0; i < 20; ++i) {
    const std::string name = std::to_string(i) + ".jsonl";
    codexFile("2026/11/20/" + name, "2026-11-20T11:00:00Z", codexLine("2026-11-20T10:00:00Z", {most, 0, 0}));
    claudeFile(name, "2026-11-21T11:00:00Z", claudeLine("2026-11-21T10:00:00Z", "1", {most, most, most, most}));
  }
  codexFile("2026/11/21/resets.jsonl", "2026-11-21T11:00:00Z", [&] {
    std::string bytes;
    for (int i = 0; i < 40; ++i) bytes += codexLine("2026-11-21T10:00:00Z", {i % 2 == 0 ? most : 0, 0, 0});
    return bytes;
  }());
  const AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.monthMetrics.totalTokens, std::int64_t{1} << 62);
  EXPECT_EQ(
      snapshot.providers.at(0).unreadableSourceCount.value() + snapshot.providers.at(1).unreadableSourceCount.value(),
      41 - 8);
  EXPECT_EQ(collector_.unreadableLogs().at(0).error, EOVERFLOW);
}

TEST_F(Collector, statusNamesMissingGrantsBeforeFaultsBeforeEmptiness) {
  ScriptedAdapter::Script script;
  AgentUsageAdapters adapters;
  adapters[AgentLogProvider::pi] = std::make_unique<ScriptedAdapter>(script);
  AgentUsageCollector collector(opener_, Calendar::utc(), std::move(adapters));
  const auto status = [&](const std::vector<AgentLogSource>& sources) {
    return collector.collect(sources, date("2026-11-21T12:00:00Z")).scanStatus;
  };
  const AgentLogSource pi = sourceAt(AgentLogProvider::pi, folder_.path());
  const AgentLogSource emptyCodex = sourceAt(codex, folder_.path());
  EXPECT_EQ(status({}), AgentScanStatus::noLogs());
  EXPECT_EQ(status({emptyCodex, pi}), AgentScanStatus::noLogs());
  EXPECT_EQ(status({sourceAt(codex, folder_.path() / "absent")}), AgentScanStatus::noLogs());
  script.unreadable = 2;
  EXPECT_EQ(status({emptyCodex, pi}), AgentScanStatus::incompleteLogs({"Pi"}));
  EXPECT_EQ(status({{codex, {}}, pi, {claude, {}}}), AgentScanStatus::missingAuthorization({"Codex", "Claude Code"}));
  script.unreadable = 0;
  script.sessions = {{"s", {}, std::nullopt}};
  EXPECT_EQ(status({emptyCodex, pi}), std::nullopt);
}

TEST_F(Collector, aSourceWithoutLocationHasAZeroEntry) {
  const AgentUsageSnapshot snapshot = collector_.collect({{claude, {}}}, date("2026-11-21T12:00:00Z"));
  ASSERT_EQ(snapshot.providers.size(), 1u);
  EXPECT_EQ(snapshot.providers[0],
            (AgentProviderUsage{"claude", "Claude Code", "terminal", {}, {}, {}, {}, false, {}, {}}));
}

TEST_F(Collector, adapterSessionsAreSummedLikeTheOthers) {
  ScriptedAdapter::Script script;
  AgentUsageAdapters adapters;
  adapters[AgentLogProvider::hermes] = std::make_unique<ScriptedAdapter>(script);
  AgentUsageCollector collector(opener_, Calendar::utc(), std::move(adapters));
  const auto event = [](std::string_view when, std::int64_t total) {
    return AdapterUsageEvent{"e", date(when), {total, total, 0, 0, 0}};
  };
  script.sessions = {
      {"one", {event("2026-11-02T00:00:00Z", 1), event("2026-11-21T11:59:00Z", 20)}, std::nullopt},
      {"two", {event("2026-11-20T00:00:00Z", 300)}, date("2026-11-21T11:59:30Z")},
      {"three", {}, std::nullopt},
      {"huge", std::vector<AdapterUsageEvent>(20, event("2026-11-20T00:00:00Z", std::int64_t{1} << 59)), std::nullopt}};
  const auto snapshot =
      collector.collect({sourceAt(AgentLogProvider::hermes, "/hermes")}, date("2026-11-21T12:00:00Z"));
  const AgentProviderUsage& usage = snapshot.providers.at(0);
  EXPECT_EQ(usage.todayMetrics, (AgentTokenMetrics{20, 20, 0, 0, 1}));
  EXPECT_EQ(usage.weekMetrics, (AgentTokenMetrics{320, 320, 0, 0, 2}));
  EXPECT_EQ(usage.monthMetrics, (AgentTokenMetrics{321, 321, 0, 0, 2}));
  EXPECT_EQ(usage.currentSessionMetrics, (AgentTokenMetrics{300, 300, 0, 0, 1}));
  EXPECT_EQ(usage.lastActivity, date("2026-11-21T11:59:30Z"));
  EXPECT_EQ(usage.unreadableSourceCount, 1);
  EXPECT_EQ(sumOf(snapshot.monthlyUsage), 321);
  ASSERT_EQ(snapshot.recentSessions.size(), 2u);
  EXPECT_EQ(snapshot.recentSessions[0].id, "hermes:one");
  EXPECT_EQ(snapshot.recentSessions[1].totalTokens, 300);
  EXPECT_EQ(script.calls.at(0), (std::pair<std::filesystem::path, Date>{"/hermes", date("2026-11-01T00:00:00Z")}));
  collector.clearCaches();
  EXPECT_EQ(script.cleared, 1);
}

TEST_F(Collector, theNewestSessionOfAllAgentsIsTheCurrentOne) {
  codexFile("2026/11/21/a.jsonl", "2026-11-21T11:00:00Z", codexLine("2026-11-21T10:00:00Z", {10, 0, 0}));
  codexFile("2026/11/21/b.jsonl", "2026-11-21T10:30:00Z", codexLine("2026-11-21T10:10:00Z", {200, 0, 0}));
  claudeFile("c.jsonl", "2026-11-21T11:00:00Z", claudeLine("2026-11-21T10:05:00Z", "1", {3000, 0, 0, 0}));
  const AgentUsageSnapshot snapshot = collect();
  EXPECT_EQ(snapshot.currentSessionMetrics.totalTokens, 200);
  EXPECT_EQ(snapshot.providers.at(1).currentSessionMetrics.totalTokens, 3000);
}

}  // namespace
}  // namespace quillmeter
