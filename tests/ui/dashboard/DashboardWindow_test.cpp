#include "DashboardFixture.h"
#include "preferences/SettingsKeys.h"
#include "ui/dashboard/AgentTable.h"
#include "ui/widgets/Notice.h"

namespace quillmeter {
namespace {

MachineDescription machineWithAgents() {
  MachineDescription machine;
  machine.agents[AgentLogProvider::codex] = {.isInstalled = true, .isConnected = true, .sessions = {}};
  machine.agents[AgentLogProvider::claude] = {.isInstalled = true};
  machine.settings = {{"settings.agentTokens.claude", false}};
  return machine;
}

// Counts what is painted in the program.
class PaintCount final : public QObject {
 public:
  PaintCount() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) names += watched->objectName().toStdString() + " ";
    return false;
  }
  std::string names;
};

class Dashboard : public DashboardTest {
 protected:
  Dashboard() : DashboardTest(machineWithAgents()) {}
};

TEST_F(Dashboard, remembersItsPageAndFollowsAnotherProgramsChoice) {
  services_.start();
  open();
  EXPECT_TRUE(isShown("dashboard.overview"));
  press(*window_, Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(services_.preferences.value(SettingsKeys::dashboardDestination), "agents");
  open();
  EXPECT_TRUE(isShown("dashboard.agents"));
  EXPECT_EQ(find("dashboard.overview"), nullptr) << "a page nobody looked at was made";
  services_.setByAnotherProgram("navigation.dashboardDestination", std::string("overview"));
  EXPECT_TRUE(isShown("dashboard.overview"));
  services_.setByAnotherProgram("navigation.dashboardDestination", std::string("nowhere"));
  window_->showPage("nowhere");
  EXPECT_TRUE(isShown("dashboard.overview"));
}

TEST_F(Dashboard, refreshesOnceWhenItIsOpenedAndWheneverItIsAsked) {
  services_.start();
  int samples = 0;
  const Subscription counting = services_.store.onSystemChange([&] { ++samples; });
  open();
  EXPECT_EQ(samples, 1);
  window_->hide();
  window_->show();
  settle();
  EXPECT_EQ(samples, 1);
  press(*window_, Qt::Key_F5);
  press(*window_, Qt::Key_R, Qt::ControlModifier);
  click("dashboard.overview.refresh");
  EXPECT_EQ(samples, 4);
}

TEST_F(Dashboard, keysOpenTheSettingsAndQuit) {
  open();
  press(*window_, Qt::Key_Comma, Qt::ControlModifier);
  click("dashboard.sidebar.settings");
  press(*window_, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(services_.actions.asked, (std::vector<std::string>{"settings", "settings", "quit"}));
  press(*window_, Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(Dashboard, paintsNothingWhileNothingChanges) {
  services_.start();
  services_.addUsage(AgentLogProvider::codex, "s", {1'200, 900, 100, 200, 0}, services_.today(9, 0));
  services_.scanAgents();
  open();
  for (const Qt::Key page : {Qt::Key_1, Qt::Key_2}) {
    press(*window_, page, Qt::ControlModifier);
    services_.advance(120);  // the histories are even
    settle();
    const PaintCount painted;
    services_.advance(20);
    services_.store.refreshAgents();
    settle();
    EXPECT_EQ(painted.names, "");
  }
  press(*window_, Qt::Key_1, Qt::ControlModifier);
  const PaintCount painted;
  services_.description.processorLoad = {0.97};
  services_.advance(2);
  settle();
  EXPECT_NE(painted.names, "");
}

TEST_F(Dashboard, itsSidebarShrinksToSymbolsAndSaysHowFreshTheFiguresAre) {
  services_.start();
  open(1040);
  EXPECT_EQ(text("dashboard.sidebar.sampled"), "采样于 14:26");
  EXPECT_EQ(text("dashboard.sidebar.scanned"), "日志读取于 14:26");
  window_->resize(700, 600);
  settle();
  EXPECT_FALSE(isShown("dashboard.sidebar.sampled"));
  EXPECT_LT(part("dashboard.sidebar").width(), 80);
}

TEST_F(Dashboard, speaksTheOtherLanguageAtOnce) {
  services_.start();
  open();
  press(*window_, Qt::Key_2, Qt::ControlModifier);
  services_.useLanguage("en");
  settle();
  EXPECT_EQ(part("dashboard.sidebar.overview").accessibleName(), "Overview");
  const auto& table = part<QTreeView>("dashboard.agents.table");
  EXPECT_EQ(table.model()->headerData(1, Qt::Horizontal), "Total");
  services_.useLanguage("zh-Hans");
}

TEST_F(Dashboard, theAgentsTableSaysEachState) {
  services_.start();
  services_.addUsage(AgentLogProvider::codex, "s", {1'200, 900, 100, 200, 0}, services_.today(14, 20));
  services_.scanAgents();
  services_.set("navigation.dashboardDestination", std::string("agents"));
  open();
  const QAbstractItemModel& model = *part<QTreeView>("dashboard.agents.table").model();
  const auto spoken = [&](int row) {
    return model.index(row, 0).data(Qt::AccessibleTextRole).toString().toStdString();
  };
  EXPECT_EQ(spoken(0), "Codex, 已连接");
  EXPECT_EQ(spoken(1), "Claude Code, 已找到，未连接");
  EXPECT_EQ(spoken(2), "千问办公, 未找到");
  EXPECT_EQ(model.index(0, 1).data(), "1.2K");
  EXPECT_EQ(model.index(1, 1).data(), "—");
  services_.set("settings.agentTokens.codex", false);
  settle();
  EXPECT_EQ(spoken(0), "Codex, 已关闭");
  press(part("dashboard.agents.table"), Qt::Key_Return);
  EXPECT_EQ(services_.actions.asked, std::vector<std::string>{"settings agents"});
}

TEST_F(Dashboard, theAgentsPageFollowsTheRangeAndTheMasterSwitch) {
  services_.set("navigation.dashboardDestination", std::string("agents"));
  window_ = std::make_unique<DashboardWindow>(services_.ui);
  EXPECT_EQ(text("dashboard.agents.totals.total"), "—") << "before the first scan";
  services_.start();
  services_.addUsage(AgentLogProvider::codex, "s", {1'200, 900, 100, 200, 0}, services_.today(14, 20));
  services_.scanAgents();
  open();
  EXPECT_EQ(text("dashboard.agents.totals.total"), "1.2K");
  services_.setByAnotherProgram("navigation.agentUsageRange", std::string("month"));
  settle();
  EXPECT_EQ(part("dashboard.agents.totals").accessibleName(), qtText("本月"));
  services_.set("settings.agentTokens.enabled", false);
  settle();
  EXPECT_EQ(part<Notice>("dashboard.agents.notice").text(), qtText("Agent Token 监控已关闭"));
  EXPECT_FALSE(isShown("dashboard.agents.totals"));
  QTest::mouseClick(part("dashboard.agents.notice").findChild<QWidget*>("action"), Qt::LeftButton);
  settle();
  EXPECT_TRUE(services_.preferences.value(SettingsKeys::tokenMonitoringEnabled));
  EXPECT_TRUE(isShown("dashboard.agents.totals"));
}

TEST(DashboardWithoutAgents, offersToConnectWhatWasFound) {
  MachineDescription machine;
  machine.agents[AgentLogProvider::opencode] = {.isInstalled = true};
  FakeServices services(machine);
  services.start();
  services.set("navigation.dashboardDestination", std::string("agents"));
  DashboardWindow window(services.ui);
  window.show();
  services.settle();
  const auto part = [&](const char* name) { return window.findChild<QWidget*>(qtText(name)); };
  EXPECT_TRUE(part("dashboard.agents.introduction")->isVisible());
  EXPECT_FALSE(part("dashboard.agents.totals")->isVisible());
  const auto* text = dynamic_cast<QLabel*>(part("dashboard.agents.introduction.text"));
  EXPECT_TRUE(text->text().contains("OpenCode"));
  services.picker.acceptsAtOnce = true;
  QTest::mouseClick(part("dashboard.agents.introduction.connect"), Qt::LeftButton);
  services.settle();
  services.advance(1);
  EXPECT_TRUE(services.access.location(AgentLogProvider::opencode));
  EXPECT_TRUE(services.preferences.boolean("settings.agentTokens.opencode").value_or(false));
  EXPECT_FALSE(part("dashboard.agents.introduction")->isVisible());
}

}  // namespace
}  // namespace quillmeter
