#include "ui/settings/SettingsWindow.h"

#include <QLabel>
#include <QSlider>

#include "SettingsFixture.h"
#include "ui/widgets/Notice.h"
#include "update/model/WebHost.h"

namespace quillmeter {
namespace {

using SettingsWindowTest = test::SettingsFixture;

class PaintCounter final : public QObject {
 public:
  explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
};

TEST_F(SettingsWindowTest, opensWhereTheUserLeftItAndTurnsByKey) {
  MachineDescription machine;
  machine.settings = {{"settings.selectedPage", std::string("agents")}};
  open("nowhere", machine);
  EXPECT_TRUE(isShown("settings.agents"));
  QTest::keyClick(window.get(), Qt::Key_6, Qt::ControlModifier);
  EXPECT_TRUE(isShown("settings.about"));
  EXPECT_EQ(text("settings.selectedPage"), "about");
  QTest::keyClick(&button("settings.pages.about"), Qt::Key_Up);
  EXPECT_TRUE(isShown("settings.screenTime"));
}

TEST_F(SettingsWindowTest, aPageThatIsNoneOpensTheFirst) {
  MachineDescription machine;
  machine.settings = {{"settings.selectedPage", std::string("gone")}};
  open("", machine);
  EXPECT_TRUE(isShown("settings.general"));
}

TEST_F(SettingsWindowTest, aChoiceIsStoredAtOnceAndAnotherProgramsShowsAtOnce) {
  open("general");
  button("settings.general.theme.dark").click();
  EXPECT_EQ(text("settings.appTheme"), "dark");
  services->setByAnotherProgram("settings.appTheme", std::string("system"));
  EXPECT_TRUE(button("settings.general.theme.system").isChecked());
  services->setByAnotherProgram("settings.appTheme", std::string("purple"));
  EXPECT_TRUE(button("settings.general.theme.light").isChecked());
}

TEST_F(SettingsWindowTest, whatCannotBeStoredIsToldAndGoesBack) {
  open("general");
  refuseWrites();
  button("settings.general.theme.dark").click();
  ASSERT_TRUE(services->actions.problem);
  EXPECT_TRUE(button("settings.general.theme.light").isChecked());

  services->actions.problem.reset();
  window->showPage("menuBar");
  button("settings.menuBar.color").click();
  EXPECT_TRUE(services->actions.problem);
  EXPECT_TRUE(button("settings.menuBar.color").isChecked());
}

TEST_F(SettingsWindowTest, anIntervalSetElsewhereIsAChoiceMore) {
  open("general");
  services->setByAnotherProgram("settings.refreshInterval", 2.5);
  EXPECT_TRUE(button("settings.general.refreshInterval.2.5").isChecked());
  button("settings.general.refreshInterval.5").click();
  EXPECT_EQ(services->preferences.real("settings.refreshInterval"), 5.0);
  services->setByAnotherProgram("settings.refreshInterval", 0.25);
  EXPECT_TRUE(button("settings.general.refreshInterval.1").isChecked());
}

TEST_F(SettingsWindowTest, theLoginItemFollowsTheSystem) {
  open("general");
  QAbstractButton& item = button("settings.general.launchAtLogin");
  services->loginItems.statusWhenRegistered = LoginItemStatus::awaitingApproval;
  item.click();
  EXPECT_TRUE(item.isChecked());
  EXPECT_EQ(item.accessibleDescription(), QStringLiteral("请到系统设置的“登录项”中批准"));

  services->loginItems.failure = "no room";
  item.click();
  EXPECT_TRUE(item.isChecked());
  EXPECT_EQ(find<Notice>("settings.general.launchAtLoginFailure").text(), QStringLiteral("no room"));

  services->loginItems.current = LoginItemStatus::unavailable;
  QEvent activated(QEvent::WindowActivate);
  QApplication::sendEvent(window.get(), &activated);
  EXPECT_FALSE(item.isChecked());
  EXPECT_FALSE(item.isEnabled());
}

TEST_F(SettingsWindowTest, aRefusedDockIconGoesBackAndSaysSo) {
  open("general");
  services->activation.refuses = true;
  button("settings.general.showInDock").click();
  EXPECT_TRUE(button("settings.general.showInDock").isChecked());
  EXPECT_FALSE(services->domain.contains("settings.showInDock"));
  EXPECT_EQ(find<Notice>("settings.general.showInDockFailure").text(),
            QStringLiteral("无法更新 Dock 显示状态，请重新打开应用后再试"));
}

TEST_F(SettingsWindowTest, eachStyleHasItsOwnOptions) {
  open("menuBar");
  struct Row {
    const char* style;
    bool metric, stroke, color, arc, symbols;
  };
  for (const Row& row :
       {Row{"metrics", true, false, false, false, false}, Row{"systemTrio", false, true, true, true, false},
        Row{"resourceTrio", false, true, true, false, true}, Row{"symbol", false, false, false, false, true}}) {
    SCOPED_TRACE(row.style);
    button(std::string("settings.menuBar.style.") + row.style).click();
    EXPECT_EQ(text("settings.menuBar.style"), row.style);
    EXPECT_EQ(isShown("settings.menuBar.metric"), row.metric);
    EXPECT_EQ(isShown("settings.menuBar.stroke"), row.stroke);
    EXPECT_EQ(isShown("settings.menuBar.color"), row.color);
    EXPECT_EQ(isShown("settings.menuBar.volumeArc"), row.arc);
    EXPECT_EQ(isShown("settings.menuBar.audioSymbol"), row.arc);
    EXPECT_EQ(isShown("settings.menuBar.symbol"), row.symbols);
    EXPECT_TRUE(isShown("settings.menuBar.size"));
  }
}

TEST_F(SettingsWindowTest, aPictureIsPaintedAgainOnlyWhenItsDrawingChanges) {
  open("menuBar");
  PaintCounter rings(find("settings.menuBar.style.resourceTrio"));
  PaintCounter network(find("settings.menuBar.style.systemTrio"));
  services->advance(10);
  QApplication::processEvents();
  EXPECT_EQ(rings.count, 0);
  services->description.processorLoad = {0.97};
  services->advance(4);
  QApplication::processEvents();
  EXPECT_GT(rings.count, 0);
  EXPECT_EQ(network.count, 0);
}

TEST_F(SettingsWindowTest, aDraggedSliderIsPreviewedAndStoredWhenItIsLetGo) {
  open("menuBar");
  auto& size = find<QSlider>("settings.menuBar.size");
  PaintCounter picture(find("settings.menuBar.style.systemTrio"));
  size.setSliderDown(true);
  size.setSliderPosition(size.maximum());
  QApplication::processEvents();
  EXPECT_GT(picture.count, 0);
  EXPECT_FALSE(services->domain.contains("settings.menuBar.iconSize"));
  size.setSliderDown(false);
  EXPECT_EQ(services->preferences.real("settings.menuBar.iconSize"), 64.0);
  services->setByAnotherProgram("settings.menuBar.iconSize", 3000.0);
  EXPECT_EQ(size.value(), size.maximum());
}

TEST_F(SettingsWindowTest, symbolsAreChosenByKeyAndAnUnknownOneLeavesNoneChosen) {
  open("menuBar");
  button("settings.menuBar.style.symbol").click();
  QAbstractButton& first = button("settings.menuBar.symbol.waveform.path.ecg");
  EXPECT_TRUE(first.isChecked());
  EXPECT_EQ(first.accessibleName(), QStringLiteral("脉搏"));
  first.setFocus();
  QTest::keyClick(&first, Qt::Key_Right);
  EXPECT_EQ(text("settings.menuBar.symbol"), "pawprint.fill");
  services->setByAnotherProgram("settings.menuBar.symbol", std::string("unheard.of"));
  EXPECT_FALSE(button("settings.menuBar.symbol.pawprint.fill").isChecked());
}

TEST_F(SettingsWindowTest, theScreenTimeRecordIsRetriedAndClearedOnlyWhenConfirmed) {
  MachineDescription machine;
  machine.screenTime.isEnabled = true;
  machine.screenTime.startedAt = Date::fromWholeSeconds(1'773'800'000);
  open("screenTime", machine);
  const std::string record = services->home.path() / ".local/share/Quillmeter/ScreenTime/activity.json";
  EXPECT_EQ(find("settings.screenTime.place").accessibleName().toStdString(), record);
  services->archive.saveOutcome = ArchiveOutcome::failed;
  button("settings.screenTime.enabled").click();
  auto& error = find<Notice>("settings.screenTime.error");
  EXPECT_FALSE(error.text().isEmpty());
  services->archive.saveOutcome = ArchiveOutcome::done;
  error.findChild<QAbstractButton*>("action")->click();
  EXPECT_TRUE(error.text().isEmpty());

  button("settings.screenTime.clear").click();
  EXPECT_TRUE(services->screenTime.startedAt());
  button("screenTime.clearDialog.clear").click();
  EXPECT_FALSE(services->screenTime.startedAt());
  button("settings.screenTime.open").click();
  EXPECT_EQ(services->actions.asked, std::vector<std::string>{"dashboard screenTime"});
}

TEST_F(SettingsWindowTest, anUpdateIsSoughtWhenAskedAndItsNotesShow) {
  MachineDescription machine;
  machine.update.manifest =
      R"({"schemaVersion":1,"version":"9.0","build":3,"minimumSystemVersion":"1.0","downloadURL":"https://)" +
      std::string(productWebHost()) + R"(/downloads/Quillmeter-9.0.dmg","releaseNotes":"<b>quicker</b>"})";
  open("about", machine);
  EXPECT_FALSE(isShown("settings.about.download"));
  button("settings.about.check").click();
  EXPECT_FALSE(button("settings.about.check").isEnabled());
  services->settle();
  EXPECT_TRUE(button("settings.about.check").isEnabled());
  EXPECT_TRUE(isShown("settings.about.download"));
  EXPECT_EQ(find<QLabel>("settings.about.notes").text(), QStringLiteral("<b>quicker</b>"));
  button("settings.about.onboarding").click();
  EXPECT_EQ(services->actions.asked, std::vector<std::string>{"onboarding"});
}

TEST_F(SettingsWindowTest, tabGoesThroughAPageAsItIsRead) {
  open("general");
  window->activateWindow();
  std::vector<std::string> order;
  for (int step = 0; step < 6; ++step) {
    order.push_back(window->focusWidget()->objectName().toStdString());
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
  }
  const std::string page = "settings.general.";
  EXPECT_EQ(order, (std::vector<std::string>{"settings.pages.general", page + "theme.light", page + "language.zh-Hans",
                                             page + "refreshInterval.2", page + "launchAtLogin", page + "showInDock"}));
}

TEST_F(SettingsWindowTest, aChangeOfLanguageReachesEveryPage) {
  open("menuBar");
  for (const char* page : {"general", "components", "agents", "screenTime", "about"}) window->showPage(page);
  services->useLanguage("en");
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Settings"));
  EXPECT_EQ(button("settings.pages.menuBar").text(), QStringLiteral("Menu bar"));
  EXPECT_EQ(button("settings.menuBar.style.symbol").text(), QStringLiteral("Symbol"));
  EXPECT_EQ(button("settings.general.language.zh-Hans").text(), QStringLiteral("简体中文"));
  EXPECT_EQ(button("settings.components.reset").text(), QStringLiteral("Restore Default"));
  EXPECT_EQ(button("settings.agents.codex.connect").accessibleName(), QStringLiteral("Connect Codex"));
}

}  // namespace
}  // namespace quillmeter
