#include "agents/model/AgentUsageSnapshot.h"

#include <gtest/gtest.h>

#include "agents/model/AgentUsageEncoding.h"
#include "base/Iso8601.h"

namespace quillmeter {
namespace {

Date at(std::string_view text) {
  return parseIso8601(text).value();
}

TEST(AgentTokenMetrics, cacheHitRateIsAbsentWithoutInput) {
  EXPECT_EQ(AgentTokenMetrics{}.cacheHitRate(), std::nullopt);
  EXPECT_EQ((AgentTokenMetrics{5, 0, 5, 0, 0}.cacheHitRate()), std::nullopt);
  EXPECT_DOUBLE_EQ((AgentTokenMetrics{4, 1, 0, 3, 0}.cacheHitRate().value()), 0.75);
  constexpr std::int64_t most = std::int64_t{1} << 62;
  EXPECT_DOUBLE_EQ((AgentTokenMetrics{0, most, 0, most, 0}.cacheHitRate().value()), 0.5);
}

TEST(AgentTokenMetrics, aSessionCountsOnlyWhenItUsedSomething) {
  EXPECT_EQ((AgentTokenMetrics{0, 0, 0, 0, 7}.countingSessionWhenUsed().sessionCount), 0);
  EXPECT_EQ((AgentTokenMetrics{1, 2, 3, 4, 7}.countingSessionWhenUsed()), (AgentTokenMetrics{1, 2, 3, 4, 1}));
}

TEST(AgentTokenMetricsDeathTest, anOverflowEndsTheProcess) {
  const AgentTokenMetrics most{INT64_MAX, 0, 0, 0, 0};
  EXPECT_DEATH((void)(most + AgentTokenMetrics{1, 0, 0, 0, 0}), "overflow");
}

TEST(AgentActivitySession, isActiveForFiveMinutesAfterItsLastUsage) {
  const Date now = at("2026-11-21T12:00:00Z");
  const auto isActive = [now](std::string_view last) {
    return AgentActivitySession{"a", "codex", "s", at(last), 1}.isActive(now);
  };
  EXPECT_TRUE(isActive("2026-11-21T12:00:00Z"));
  EXPECT_TRUE(isActive("2026-11-21T11:55:00.1Z"));
  EXPECT_FALSE(isActive("2026-11-21T11:55:00Z"));
  EXPECT_FALSE(isActive("2026-11-21T12:00:00.000001Z"));
}

TEST(AgentUsageSnapshot, activeSessionsAreNewestFirstAndEqualTimesKeepTheirOrder) {
  AgentUsageSnapshot snapshot;
  const auto add = [&snapshot](std::string id, std::string_view last) {
    snapshot.recentSessions.push_back({std::move(id), "pi", "s", at(last), 1});
  };
  add("old", "2026-11-21T11:50:00Z");
  add("first", "2026-11-21T11:58:00Z");
  add("second", "2026-11-21T11:58:00Z");
  add("newest", "2026-11-21T11:59:00Z");
  add("ahead", "2026-11-21T12:00:01Z");
  std::string order;
  for (const AgentActivitySession& session : snapshot.activeSessions(at("2026-11-21T12:00:00Z")))
    order += session.id + " ";
  EXPECT_EQ(order, "newest first second ");
}

TEST(AgentScanStatus, saysWhatIsMissing) {
  const LocaleConventions locale;
  EXPECT_EQ(AgentUsageSnapshot::empty().scanMessage(locale), "正在读取本地 Agent 日志");
  EXPECT_EQ(AgentScanStatus::missingAuthorization({"Codex", "Claude Code"}).message(locale),
            "尚未选择 Codex and Claude Code 日志文件夹");
  EXPECT_EQ(AgentScanStatus::incompleteLogs({"Pi"}).message(locale), "Pi 的部分日志读取失败，统计可能不完整。");
  EXPECT_EQ(AgentUsageSnapshot{}.scanMessage(locale), std::nullopt);
}

AgentUsageSnapshot fullSnapshot() {
  AgentUsageSnapshot snapshot;
  snapshot.todayMetrics = {1, 2, 3, 4, 5};
  snapshot.hourlyUsage = {{at("2026-11-21T00:00:00Z"), {6, 7, 8, 9, 0}}};
  snapshot.providers = {{"codex", "Codex", "symbol", {}, {}, {}, {}, true, at("2026-11-21T01:00:05.02Z"), 2},
                        {"claude", "Claude Code", "terminal", {}, {}, {}, {}, false, std::nullopt, std::nullopt}};
  snapshot.weeklyLimitUsed = 0.045;
  snapshot.weeklyResetAt = at("2026-11-26T00:00:00Z");
  snapshot.lastUpdated = at("2026-11-21T03:00:00Z");
  snapshot.scanStatus = AgentScanStatus::missingAuthorization({"Codex", "Claude Code"});
  snapshot.recentSessions = {{"codex:/a", "codex", "a", at("2026-11-21T02:59:00Z"), 11}};
  return snapshot;
}

TEST(AgentUsageEncoding, restoresWhatItWrote) {
  for (const AgentUsageSnapshot& snapshot : {fullSnapshot(), AgentUsageSnapshot::empty(), AgentUsageSnapshot{}}) {
    EXPECT_EQ(decodeAgentUsageSnapshot(encodeAgentUsageSnapshot(snapshot, 2)), snapshot);
  }
}

TEST(AgentUsageEncoding, writesFieldNamesInOrderAndLeavesAbsentValuesOut) {
  AgentUsageSnapshot snapshot;
  snapshot.providers = {{"codex", "Codex", "s", {}, {}, {}, {}, true, at("2026-11-21T01:00:05.02Z"), std::nullopt}};
  snapshot.weeklyLimitUsed = 0.045;
  snapshot.lastUpdated = at("2026-11-21T03:00:00Z");
  snapshot.scanStatus = AgentScanStatus::noLogs();
  const std::string zero = R"({"totalTokens":0,"inputTokens":0,"outputTokens":0,"cachedTokens":0,"sessionCount":0})";
  const std::string four = R"("todayMetrics":)" + zero + R"(,"weekMetrics":)" + zero + R"(,"monthMetrics":)" + zero +
                           R"(,"currentSessionMetrics":)" + zero;
  EXPECT_EQ(
      encodeAgentUsageSnapshot(snapshot),
      "{" + four +
          R"(,"hourlyUsage":[],"weeklyUsage":[],"monthlyUsage":[],"providers":[{"id":"codex","name":"Codex",)" +
          R"("symbol":"s",)" + four + R"(,"isDetected":true,"lastActivity":"2026-11-21T01:00:05.02Z"}],)" +
          R"("weeklyLimitUsed":0.045,"lastUpdated":"2026-11-21T03:00:00Z","scanStatus":{"noLogs":{}},"recentSessions":[]})");
}

TEST(AgentUsageEncoding, aStatusHasExactlyOneKey) {
  EXPECT_EQ(decodeAgentScanStatus(R"({"noLogs":{}})"), AgentScanStatus::noLogs());
  EXPECT_EQ(encodeAgentScanStatus(AgentScanStatus::incompleteLogs({"Pi"})), R"({"incompleteLogs":{"_0":["Pi"]}})");
  const auto both = AgentScanStatus::missingAuthorization({"Codex", "Claude Code"});
  EXPECT_EQ(decodeAgentScanStatus(encodeAgentScanStatus(both)), both);
  for (const char* wrong : {"{}", R"({"noLogs":{},"reading":{}})", R"({"other":{}})", R"({"noLogs":1})", "[]",
                            "\"noLogs\"", R"({"incompleteLogs":{}})", R"({"incompleteLogs":{"_0":[1]}})", "{", ""}) {
    EXPECT_EQ(decodeAgentScanStatus(wrong), std::nullopt) << wrong;
  }
}

TEST(AgentUsageEncoding, refusesWhatIsNoSnapshot) {
  const std::string good = encodeAgentUsageSnapshot(fullSnapshot());
  const auto replaced = [&good](std::string_view from, std::string_view to) {
    std::string text = good;
    text.replace(text.find(from), from.size(), to);
    return text;
  };
  EXPECT_TRUE(decodeAgentUsageSnapshot(replaced("\"symbol\"", "\"later\":[],\"symbol\"")));
  for (const std::string& wrong :
       {replaced("\"totalTokens\":1", "\"totalTokens\":1.5"),
        replaced("\"totalTokens\":1", "\"totalTokens\":9223372036854775808"),
        replaced("\"isDetected\":true", "\"isDetected\":1"), replaced("2026-11-21T03:00:00Z", "yesterday"),
        replaced("\"lastUpdated\"", "\"updated\""), replaced("0.045", "\"0.045\""), std::string("{}"),
        std::string("[")}) {
    EXPECT_EQ(decodeAgentUsageSnapshot(wrong), std::nullopt) << wrong;
  }
}

TEST(AgentUsageEncoding, aPathThatIsNoUtf8StillEncodes) {
  AgentUsageSnapshot snapshot;
  snapshot.recentSessions = {{"codex:/\xFFname", "codex", "a", at("2026-11-21T02:59:00Z"), 11}};
  EXPECT_TRUE(decodeAgentUsageSnapshot(encodeAgentUsageSnapshot(snapshot)));
}

}  // namespace
}  // namespace quillmeter
