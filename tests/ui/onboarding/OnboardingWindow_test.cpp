#include "ui/onboarding/OnboardingWindow.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QCheckBox>
#include <QTest>

#include "base/L10n.h"
#include "demo/FakeServices.h"
#include "preferences/SettingsKeys.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Notice.h"

namespace quillmeter::test {
namespace {

MachineDescription machineWithAgents() {
  MachineDescription machine;
  for (const auto provider : {AgentLogProvider::codex, AgentLogProvider::claude, AgentLogProvider::pi})
    machine.agents[provider].isInstalled = true;
  return machine;
}

struct Onboarding {
  explicit Onboarding(MachineDescription machine = machineWithAgents()) : services(std::move(machine)) {
    services.start();
    window.show();
    QApplication::setActiveWindow(&window);
  }
  ~Onboarding() { L10n::install({}); }

  template <typename Widget>
  Widget& part(const std::string& name) {
    auto* found = dynamic_cast<Widget*>(window.findChild<QWidget*>(QString::fromStdString("onboarding." + name)));
    if (found == nullptr) throw std::runtime_error("no " + name);
    return *found;
  }
  void click(const std::string& name) { part<QAbstractButton>(name).click(); }
  bool shows(const std::string& name) { return part<QWidget>(name).isVisible(); }
  std::string buttonText(const std::string& name) { return part<QAbstractButton>(name).text().toStdString(); }
  std::int64_t completed() { return services.preferences.value(SettingsKeys::onboardingVersion); }
  void confirm() {
    services.picker.answer(services.picker.requests.back().startDirectory);
    services.settle();
  }

  FakeServices services;
  OnboardingWindow window{services.ui};
};

TEST(OnboardingWindow, goesThroughItsStepsByKeyAndOpensTheDashboardAtTheEnd) {
  Onboarding opened;
  EXPECT_TRUE(opened.shows("welcome"));
  QTest::keyClick(&opened.window, Qt::Key_PageUp);
  EXPECT_TRUE(opened.shows("welcome"));
  EXPECT_FALSE(opened.shows("back"));
  for (const char* step : {"agents", "menuBar", "finish"}) {
    QTest::keyClick(&opened.window, Qt::Key_PageDown);
    EXPECT_TRUE(opened.shows(step)) << step;
  }
  QTest::keyClick(&opened.window, Qt::Key_Left, Qt::AltModifier);
  EXPECT_TRUE(opened.shows("menuBar"));
  opened.click("next");
  QTest::keyClick(&opened.window, Qt::Key_PageDown);
  EXPECT_TRUE(opened.window.isVisible()) << "turning pages ends nothing";
  EXPECT_EQ(opened.completed(), 0);
  opened.click("next");
  EXPECT_FALSE(opened.window.isVisible());
  EXPECT_EQ(opened.completed(), SettingsKeys::currentOnboardingVersion);
  EXPECT_EQ(opened.services.actions.asked, std::vector<std::string>{"dashboard"});
  EXPECT_TRUE(opened.services.picker.requests.empty()) << "no folder is asked for without a click";
}

TEST(OnboardingWindow, skippingClosingAndEscapeCompleteIt) {
  for (const int way : {0, 1, 2}) {
    Onboarding opened;
    if (way == 0) opened.click("skip");
    if (way == 1) opened.window.close();
    if (way == 2) QTest::keyClick(&opened.window, Qt::Key_Escape);
    EXPECT_FALSE(opened.window.isVisible());
    EXPECT_EQ(opened.completed(), SettingsKeys::currentOnboardingVersion);
    EXPECT_TRUE(opened.services.actions.asked.empty());
  }
}

TEST(OnboardingWindow, returnPressesTheFocusedButtonElseGoesOn) {
  Onboarding opened;
  QTest::keyClick(&opened.window, Qt::Key_Return);
  EXPECT_TRUE(opened.shows("agents"));
  opened.part<QWidget>("back").setFocus();
  QTest::keyClick(&opened.window, Qt::Key_Return);
  EXPECT_TRUE(opened.shows("welcome"));
}

TEST(OnboardingWindow, connectsTheChosenAgentsInSequenceAndCountsThem) {
  Onboarding opened;
  opened.click("next");
  EXPECT_EQ(opened.buttonText("connectAll"), "依次连接 3 个");
  opened.click("agent.claude.chosen");
  EXPECT_EQ(opened.buttonText("connectAll"), "依次连接 2 个");
  opened.click("connectAll");
  EXPECT_EQ(opened.part<FigureLabel>("progress").text().toStdString(), "正在连接 Codex（1/2）");
  EXPECT_FALSE(opened.part<QWidget>("agent.claude.connect").isEnabled());
  opened.confirm();
  EXPECT_EQ(opened.part<FigureLabel>("progress").text().toStdString(), "正在连接 Pi（2/2）");
  EXPECT_TRUE(opened.shows("agent.codex.state"));
  opened.services.picker.answer(opened.services.picker.requests.back().startDirectory);
  opened.services.settle();
  EXPECT_EQ(opened.part<Notice>("feedback").text().toStdString(), "已连好 2 个来源，正在找可统计的日志。");
  EXPECT_TRUE(opened.services.preferences.value(SettingsKeys::piMonitoringEnabled)) << "off by default";
  opened.click("agent.claude.chosen");
  EXPECT_EQ(opened.buttonText("connectAll"), "依次连接 1 个") << "what is not connected can be chosen again";
}

TEST(OnboardingWindow, anAgentThatWasSwitchedOffIsCountedAgainOnlyWhenItIsChosen) {
  for (const bool isChosen : {false, true}) {
    MachineDescription machine = machineWithAgents();
    machine.settings = {{"settings.agentTokens.pi", false}};
    Onboarding opened(machine);
    opened.click("next");
    EXPECT_EQ(opened.buttonText("connectAll"), "依次连接 2 个");
    if (isChosen) opened.click("agent.pi.chosen");
    opened.services.picker.acceptsAtOnce = true;
    opened.click("connectAll");
    EXPECT_EQ(opened.shows("agent.pi.state"), isChosen);
    EXPECT_EQ(opened.services.preferences.value(SettingsKeys::piMonitoringEnabled), isChosen);
  }
}

TEST(OnboardingWindow, aCancelledSequenceKeepsWhatWasGrantedAndSaysSo) {
  Onboarding opened;
  opened.click("next");
  opened.click("connectAll");
  opened.confirm();
  opened.services.picker.answer(std::nullopt);
  opened.services.settle();
  EXPECT_EQ(opened.part<Notice>("feedback").text().toStdString(), "已连好 1 个来源，剩下的下次会接着来。");
  opened.services.useLanguage("en");
  EXPECT_EQ(opened.part<Notice>("feedback").text().toStdString(),
            "1 sources connected. The rest can follow next time.");
  EXPECT_FALSE(opened.services.preferences.value(SettingsKeys::piMonitoringEnabled));
  opened.click("agent.pi.connect");
  opened.window.close();
  opened.confirm();
  EXPECT_TRUE(opened.services.access.location(AgentLogProvider::pi)) << "an open picker outlives the step";
}

TEST(OnboardingWindow, saysWhenNoAgentIsThere) {
  Onboarding opened{MachineDescription()};
  opened.click("next");
  EXPECT_FALSE(opened.shows("connectAll"));
}

TEST(OnboardingWindow, storesLanguageAndStyleAtOnceAndFollowsOthersChanges) {
  Onboarding opened;
  for (auto* button : opened.window.findChildren<QAbstractButton*>()) {
    if (button->text() == "English") button->click();
  }
  EXPECT_EQ(opened.services.preferences.value(SettingsKeys::appLanguage), "en");
  opened.services.settle();
  EXPECT_EQ(opened.buttonText("next"), "Continue");
  opened.click("next");
  opened.click("next");
  EXPECT_TRUE(opened.part<QAbstractButton>("style.systemTrio").isChecked());
  opened.click("style.symbol");
  EXPECT_EQ(opened.services.preferences.value(SettingsKeys::menuBarStyle), "symbol");
  opened.services.setByAnotherProgram("settings.menuBar.style", PreferenceValue(std::string("metrics")));
  EXPECT_TRUE(opened.part<QAbstractButton>("style.metrics").isChecked());
}

TEST(OnboardingWindow, theLoginSwitchShowsWhatTheSystemSays) {
  Onboarding opened;
  for (int step = 0; step < 3; ++step) opened.click("next");
  opened.click("launchAtLogin");
  EXPECT_EQ(opened.services.loginItems.current, LoginItemStatus::registered);
  opened.services.loginItems.failure = "refused by the system";
  opened.click("launchAtLogin");
  EXPECT_EQ(opened.part<Notice>("launchAtLoginFailure").text().toStdString(), "refused by the system");
  EXPECT_TRUE(opened.part<QAbstractButton>("launchAtLogin").isChecked());
}

}  // namespace
}  // namespace quillmeter::test
