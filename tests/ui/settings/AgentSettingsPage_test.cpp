#include "SettingsFixture.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Notice.h"

namespace quillmeter {
namespace {

using Provider = AgentLogProvider;

class AgentSettingsPageTest : public test::SettingsFixture {
 protected:
  void SetUp() override {
    MachineDescription machine;
    machine.agents[Provider::codex] = {.isInstalled = true, .isConnected = true};
    machine.agents[Provider::claude] = {.isInstalled = true};
    machine.agents[Provider::pi] = {.isInstalled = true};
    open("agents", machine);
  }
  QString state(const std::string& agent) const {
    return find<FigureLabel>("settings.agents." + agent + ".state").text();
  }
  QString notice() const { return find<Notice>("settings.agents.notice").text(); }
  QAbstractButton& control(const std::string& agent, const std::string& name) const {
    return button("settings.agents." + agent + "." + name);
  }
};

TEST_F(AgentSettingsPageTest, eachAgentSaysWhatIsKnownOfItsFolder) {
  EXPECT_EQ(state("codex"), QStringLiteral("已连接"));
  EXPECT_EQ(state("claude"), QStringLiteral("已找到，未连接"));
  EXPECT_EQ(state("hermes"), QStringLiteral("未找到"));
  EXPECT_TRUE(isShown("settings.agents.codex.change"));
  EXPECT_FALSE(isShown("settings.agents.codex.connect"));

  services->setByAnotherProgram("settings.agentLogs.claude.bookmark.v2", PreferenceData{"/gone/.claude"});
  services->settle();
  EXPECT_EQ(state("claude"), QStringLiteral("文件夹无法读取，请重新连接"));
  EXPECT_EQ(button("settings.agents.connectAll").text(), QStringLiteral("连接 Claude Code"));
}

TEST_F(AgentSettingsPageTest, connectingIsFollowedAndSwitchesOnWhatWasNeverSwitched) {
  control("pi", "connect").click();
  EXPECT_EQ(notice(), QStringLiteral("正在连接 Pi（1/1）"));
  EXPECT_FALSE(control("claude", "connect").isEnabled());
  EXPECT_FALSE(control("codex", "disconnect").isEnabled());
  services->picker.answer(services->picker.requests.back().startDirectory);
  EXPECT_EQ(notice(), QStringLiteral("Pi 已连好，正在找可统计的日志。"));
  EXPECT_EQ(state("pi"), QStringLiteral("已连接"));
  EXPECT_TRUE(control("pi", "enabled").isChecked());
  services->useLanguage("en");
  EXPECT_NE(notice(), QStringLiteral("Pi 已连好，正在找可统计的日志。"));
}

TEST_F(AgentSettingsPageTest, whatWasSwitchedOffByHandStaysOff) {
  services->set("settings.agentTokens.pi", false);
  control("pi", "connect").click();
  services->picker.answer(services->picker.requests.back().startDirectory);
  EXPECT_EQ(state("pi"), QStringLiteral("已连接"));
  EXPECT_FALSE(control("pi", "enabled").isChecked());
}

TEST_F(AgentSettingsPageTest, allThatAreFoundOnAndNotConnectedAreConnectedInTurn) {
  EXPECT_EQ(button("settings.agents.connectAll").text(), QStringLiteral("连接 Claude Code"));
  control("pi", "enabled").click();
  control("hermes", "enabled").click();  // not found: not among them
  EXPECT_EQ(button("settings.agents.connectAll").text(), QStringLiteral("依次连接 2 个"));
  services->picker.acceptsAtOnce = true;
  button("settings.agents.connectAll").click();
  EXPECT_EQ(notice(), QStringLiteral("已连好 2 个来源，正在找可统计的日志。"));
  EXPECT_FALSE(isShown("settings.agents.connectAll"));
}

TEST_F(AgentSettingsPageTest, aGrantThatCannotBeTakenBackIsTold) {
  refuseWrites();
  control("codex", "disconnect").click();
  EXPECT_TRUE(notice().startsWith(QStringLiteral("无法取消 Codex 的文件夹授权。")));
  services->domain.refuseWrites(std::nullopt);
  control("codex", "disconnect").click();
  EXPECT_EQ(notice(), QString());
  EXPECT_EQ(state("codex"), QStringLiteral("已找到，未连接"));
}

TEST_F(AgentSettingsPageTest, theSwitchOfAllRulesTheOthers) {
  button("settings.agents.enabled").click();
  EXPECT_EQ(services->preferences.boolean("settings.agentTokens.enabled"), false);
  EXPECT_FALSE(control("codex", "enabled").isEnabled());
  EXPECT_TRUE(control("codex", "enabled").isChecked());
}

}  // namespace
}  // namespace quillmeter
