#include <QAbstractButton>

#include "CardFixture.h"
#include "core/MonitorStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/cards/ActiveSessionsView.h"
#include "ui/widgets/SegmentedControl.h"

namespace quillmeter {
namespace {

constexpr AgentTokenMetrics use{.totalTokens = 1'500, .inputTokens = 900, .outputTokens = 200, .cachedTokens = 400};

class AgentCards : public CardTest {
 protected:
  void useCodex(int hour, int minute, const std::string& session = "a") {
    services_.addUsage(AgentLogProvider::codex, session, use, services_.today(hour, minute));
  }
  void start() {
    services_.start();
    services_.scanAgents();
  }
  void setLimits(double primary, Date primaryResetAt) {
    services_.description.limits = DescribedLimits{.observedAt = services_.today(14, 20),
                                                   .primaryUsed = primary,
                                                   .primaryResetAt = primaryResetAt,
                                                   .weeklyUsed = 0.81,
                                                   .weeklyResetAt = services_.today(23, 0)};
  }
};

TEST_F(AgentCards, tokensLeadToTheSettingsWhereThereIsNothingToCount) {
  services_.description.agents[AgentLogProvider::codex].isInstalled = true;
  services_.start();
  show(MonitorComponentKind::agentTokens);
  EXPECT_EQ(text("card.agentTokens.prompt"), "连接 Agent 后显示 Token 用量");
  EXPECT_FALSE(part<QWidget>("card.agentTokens.total").isVisible());
  part<QAbstractButton>("card.agentTokens.act").click();
  EXPECT_EQ(services_.actions.asked, std::vector<std::string>{"settings agents"});

  services_.set(SettingsKeys::tokenMonitoringEnabled.key, false);
  services_.settle();
  EXPECT_EQ(text("card.agentTokens.prompt"), "Agent Token 监控已关闭");
  services_.set(SettingsKeys::tokenMonitoringEnabled.key, true);
  useCodex(9, 0);
  services_.scanAgents();
  EXPECT_EQ(text("card.agentTokens.total"), "1.5K");
  EXPECT_FALSE(part<QWidget>("card.agentTokens.prompt").isVisible());
}

TEST_F(AgentCards, tokensSayWhatTheScanHasToSay) {
  services_.description.agents[AgentLogProvider::claude].isInstalled = true;
  useCodex(9, 0);
  show(MonitorComponentKind::agentTokens);
  EXPECT_EQ(text("card.agentTokens.total"), "—");
  EXPECT_EQ(text("card.agentTokens.message"), "正在读取本地 Agent 日志");
  start();
  EXPECT_EQ(text("card.agentTokens.total"), "1.5K");
  EXPECT_EQ(text("card.agentTokens.message"), "尚未选择 Claude Code 日志文件夹");
  EXPECT_TRUE(part<QWidget>("card.agentTokens.connect").isVisible());
  services_.description.agents[AgentLogProvider::claude].isConnected = true;
  services_.scanAgents();
  EXPECT_FALSE(part<QWidget>("card.agentTokens.message").isVisible());
}

TEST_F(AgentCards, theRangeIsASettingThatAllCardsShare) {
  useCodex(9, 0);
  services_.addUsage(AgentLogProvider::codex, "b", use, Date::fromSeconds(services_.today(9, 0).seconds() - 86'400));
  start();
  show(MonitorComponentKind::agentTokens, DashboardCardSize::large);
  EXPECT_EQ(text("card.agentTokens.total"), "1.5K");
  services_.setByAnotherProgram(std::string(SettingsKeys::agentUsageRange.key), std::string("week"));
  EXPECT_EQ(text("card.agentTokens.total"), "3.0K");
  EXPECT_EQ(part<SegmentedControl>("card.agentTokens.range").chosen(), "week");
  services_.domain.refuseWrites(PreferenceProblem{PreferenceProblem::Kind::unwritable, {}, 0, {}});
  auto segments = part<QWidget>("card.agentTokens.range").findChildren<QAbstractButton*>();
  ASSERT_EQ(segments.size(), 3);
  segments.last()->click();
  EXPECT_TRUE(services_.actions.problem.has_value());
}

TEST_F(AgentCards, limitsCountDownByTheMinute) {
  useCodex(14, 25);
  setLimits(0.42, services_.today(17, 0));
  start();
  MonitorCard& card = show(MonitorComponentKind::agentLimits);
  EXPECT_EQ(text("card.agentLimits.primary.used"), "42%");
  EXPECT_EQ(text("card.agentLimits.primary.reset"), "02:34 后重置 · 17:00");
  EXPECT_EQ(card.toolTip().toStdString(), "额度记录时间：6 分钟前");
  services_.store.stop();
  services_.advance(61);
  EXPECT_EQ(text("card.agentLimits.primary.reset"), "02:33 后重置 · 17:00");
  card.hide();
  const std::size_t timers = services_.timers.running().size();
  card.show();
  EXPECT_EQ(services_.timers.running().size(), timers + 1) << "only while it is visible";
}

TEST_F(AgentCards, limitsOfAWindowThatIsOverAreNotShownAsUsed) {
  useCodex(9, 0);
  setLimits(0.97, services_.today(14, 0));
  start();
  show(MonitorComponentKind::agentLimits);
  EXPECT_EQ(text("card.agentLimits.primary.used"), "—");
  EXPECT_EQ(text("card.agentLimits.primary.reset"), "窗口已重置");
  EXPECT_EQ(text("card.agentLimits.weekly.used"), "81%");
}

TEST_F(AgentCards, limitsSayWhyThereAreNone) {
  services_.start();
  show(MonitorComponentKind::agentLimits);
  EXPECT_EQ(text("card.agentLimits.prompt"), "连接 Codex 后显示它的使用额度");
  useCodex(9, 0);
  services_.scanAgents();
  EXPECT_EQ(text("card.agentLimits.prompt"), "Codex 日志中暂无使用额度记录");
  EXPECT_FALSE(part<QWidget>("card.agentLimits.act").isVisible());
}

TEST_F(AgentCards, sessionsLeaveTheListAsTheyGrowOld) {
  for (const char* session : {"a", "b", "c"}) useCodex(14, 25, session);
  start();
  services_.store.stop();
  ActiveSessionsView view(services_.ui, 2);
  view.show();
  EXPECT_NE(shownTexts(view).find("+1"), std::string::npos) << shownTexts(view);
  EXPECT_NE(shownTexts(view).find("1 分钟前"), std::string::npos) << shownTexts(view);
  services_.advance(121);
  EXPECT_NE(shownTexts(view).find("3 分钟前"), std::string::npos) << shownTexts(view);
  services_.advance(121);
  EXPECT_NE(shownTexts(view).find("最近五分钟没有活跃会话"), std::string::npos) << shownTexts(view);
}

}  // namespace
}  // namespace quillmeter
