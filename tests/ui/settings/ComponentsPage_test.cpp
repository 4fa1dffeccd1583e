#include <vector>

#include "SettingsFixture.h"
#include "preferences/DashboardLayoutStorage.h"

namespace quillmeter {
namespace {

class ComponentsPageTest : public test::SettingsFixture {
 protected:
  void SetUp() override { open("components"); }

  std::vector<MonitorComponentKind> stored(ComponentPlacement placement = ComponentPlacement::dashboard) const {
    std::vector<MonitorComponentKind> kinds;
    for (const auto& card : DashboardLayoutStorage::load(services->preferences, placement)) {
      if (card.isEnabled) kinds.push_back(card.kind);
    }
    return kinds;
  }
  QWidget& row(const std::string& kind) const { return find("settings.components." + kind); }

  using Kind = MonitorComponentKind;
};

TEST_F(ComponentsPageTest, keysMoveARowStoreEachStepAndUndoIt) {
  const auto before = stored();
  row("agentTokens").setFocus();
  QTest::keyClick(&row("agentTokens"), Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(stored()[0], Kind::agentLimits);
  EXPECT_EQ(stored()[1], Kind::agentTokens);
  EXPECT_EQ(row("agentTokens").accessibleName(), QStringLiteral("Agent Token，第 2 个，共 8 个"));
  EXPECT_TRUE(row("agentTokens").hasFocus());
  QTest::keyClick(&row("agentTokens"), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(stored(), before);
}

TEST_F(ComponentsPageTest, aRowIsDraggedToItsNewPlaceAndEscapeGivesTheDragUp) {
  QWidget& dragged = row("agentTokens");
  const QPoint grip(20, dragged.height() / 2);
  const auto drag = [&] {
    QTest::mousePress(&dragged, Qt::LeftButton, {}, grip);
    QTest::mouseMove(&dragged, grip + QPoint(0, 20));
    QTest::mouseMove(&dragged, grip + QPoint(0, 2 * dragged.height()));
  };
  const auto before = stored();
  drag();
  QTest::keyClick(&dragged, Qt::Key_Escape);
  QTest::mouseRelease(&dragged, Qt::LeftButton, {}, grip);
  EXPECT_EQ(stored(), before);
  drag();
  QTest::mouseRelease(&dragged, Qt::LeftButton, {}, grip);
  EXPECT_NE(stored(), before);
  EXPECT_NE(stored().front(), Kind::agentTokens);
}

TEST_F(ComponentsPageTest, switchSizeAndResetAreStoredForTheLayoutThatIsShown) {
  const auto dashboard = stored();
  button("settings.components.placement.menuBar").click();
  EXPECT_FALSE(button("settings.components.reset").isEnabled());
  button("settings.components.disk.enabled").click();
  EXPECT_EQ(stored(ComponentPlacement::menuBar).size(), 6U);
  button("settings.components.disk.size.small").click();
  const auto cards = DashboardLayoutStorage::load(services->preferences, ComponentPlacement::menuBar);
  EXPECT_EQ(cards[5], (DashboardCardConfig{Kind::disk, DashboardCardSize::small, true}));
  button("settings.components.reset").click();
  EXPECT_EQ(stored(ComponentPlacement::menuBar).size(), 5U);
  EXPECT_FALSE(button("settings.components.reset").isEnabled());
  EXPECT_EQ(stored(), dashboard);
}

TEST_F(ComponentsPageTest, whatCannotBeStoredGoesBackAndAnotherProgramsLayoutShows) {
  refuseWrites();
  button("settings.components.cpu.enabled").click();
  EXPECT_TRUE(services->actions.problem);
  EXPECT_TRUE(button("settings.components.cpu.enabled").isChecked());
  services->domain.refuseWrites(std::nullopt);
  services->setByAnotherProgram("settings.dashboardLayout.v2",
                                PreferenceData{R"([{"kind":"fan","size":"large","isEnabled":true}])"});
  EXPECT_EQ(row("fan").accessibleName().left(6), QStringLiteral("散热，第 1"));
}

}  // namespace
}  // namespace quillmeter
