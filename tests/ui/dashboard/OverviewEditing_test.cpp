#include <gmock/gmock.h>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

#include "DashboardFixture.h"
#include "ui/dashboard/CardHandles.h"

namespace quillmeter {
namespace {

using testing::ElementsAre;
using Kind = MonitorComponentKind;

MachineDescription machineWithCodex() {
  MachineDescription machine;
  machine.agents[AgentLogProvider::codex] = {.isInstalled = true, .isConnected = true, .sessions = {}};
  return machine;
}

class OverviewEditing : public DashboardTest {
 protected:
  OverviewEditing() : DashboardTest(machineWithCodex()) {}
  void SetUp() override {
    services_.start();
    open();
    click("dashboard.overview.edit");
  }
  std::vector<std::string> stored() {
    std::vector<std::string> shown;
    for (const auto& card : DashboardLayoutStorage::load(services_.preferences, ComponentPlacement::dashboard)) {
      if (!card.isEnabled) continue;
      shown.push_back(std::string(rawValue(card.kind)) + (card.size == DashboardCardSize::large ? "+" : ""));
    }
    return shown;
  }
  // Left to right, top to bottom.
  std::vector<std::string> seen() {
    std::vector<CardHandles*> cards;
    for (QWidget* widget : window_->findChildren<QWidget*>()) {
      auto* handles = dynamic_cast<CardHandles*>(widget);
      if (handles != nullptr && handles->isVisible()) cards.push_back(handles);
    }
    const auto corner = [](CardHandles* card) { return card->mapTo(card->window(), QPoint()); };
    std::ranges::sort(cards, [&](CardHandles* a, CardHandles* b) {
      return std::pair(corner(a).y(), corner(a).x()) < std::pair(corner(b).y(), corner(b).x());
    });
    std::vector<std::string> names;
    for (const CardHandles* card : cards) names.push_back(card->objectName().mid(15).toStdString());
    return names;
  }
  CardHandles& card(const std::string& kind) { return part<CardHandles>("dashboard.edit." + kind); }
  void mouse(QWidget& widget, QEvent::Type type, QPoint global) {
    QMouseEvent event(type, widget.mapFromGlobal(QPointF(global)), QPointF(global), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
  }
  // Takes the card at its corner and holds it over the middle of another.
  void drag(CardHandles& taken, CardHandles& over) {
    const QPoint grip(20, 20);
    const QPoint start = taken.mapToGlobal(grip);
    const QPoint end = over.mapToGlobal(over.rect().center()) - taken.rect().center() + grip;
    mouse(taken, QEvent::MouseButtonPress, start);
    mouse(taken, QEvent::MouseMove, start + QPoint(12, 12));
    mouse(taken, QEvent::MouseMove, end);
  }
};

const std::vector<std::string> defaults = {"agentTokens+", "agentLimits+", "cpu",      "memory",
                                           "battery",      "disk",         "network+", "fan"};

TEST_F(OverviewEditing, keysMoveResizeAndHideAndEachStepIsStoredAndUndone) {
  press(card("cpu"), Qt::Key_Right, Qt::ControlModifier);
  press(card("memory"), Qt::Key_Return);
  press(card("disk"), Qt::Key_Delete);
  EXPECT_THAT(stored(), ElementsAre("agentTokens+", "agentLimits+", "memory+", "cpu", "battery", "network+", "fan"));
  EXPECT_THAT(seen(), ElementsAre("agentTokens", "agentLimits", "memory", "cpu", "battery", "network", "fan"));
  EXPECT_TRUE(isShown("dashboard.hidden.disk"));
  press(card("cpu"), Qt::Key_Z, Qt::ControlModifier);
  press(card("cpu"), Qt::Key_Z, Qt::ControlModifier);
  press(card("cpu"), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(stored(), defaults);
  press(part("dashboard.sidebar.overview"), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(stored()[3], "cpu");
}

TEST_F(OverviewEditing, aMovedCardKeepsTheFocusAndSaysItsPlace) {
  card("fan").setFocus(Qt::TabFocusReason);
  press(card("fan"), Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(stored().front(), "fan");
  EXPECT_TRUE(card("fan").hasFocus());
  EXPECT_EQ(card("fan").accessibleName().toStdString(), "散热，小，第 1 张，共 8 张");
}

TEST_F(OverviewEditing, aDraggedCardTakesThePlaceItIsHeldOver) {
  drag(card("cpu"), card("battery"));
  EXPECT_EQ(stored(), defaults) << "stored before the card was let go";
  mouse(card("cpu"), QEvent::MouseButtonRelease, QCursor::pos());
  settle();
  EXPECT_THAT(stored(),
              ElementsAre("agentTokens+", "agentLimits+", "memory", "battery", "cpu", "disk", "network+", "fan"));
  EXPECT_THAT(seen(), ElementsAre("agentTokens", "agentLimits", "memory", "battery", "cpu", "disk", "network", "fan"));
}

TEST_F(OverviewEditing, tabGoesThroughTheCardsAsTheyStand) {
  press(card("memory"), Qt::Key_Home, Qt::ControlModifier);
  click("dashboard.overview.edit");
  std::vector<std::string> reached;
  part("dashboard.overview.edit").setFocus(Qt::TabFocusReason);
  for (int tab = 0; tab < 3; ++tab) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached.push_back(QApplication::focusWidget()->objectName().toStdString());
  }
  EXPECT_THAT(reached, ElementsAre("card.memory.clean", "card.agentTokens.range.today", "card.agentTokens.chart"));
}

TEST_F(OverviewEditing, escapeTakesADragBackAndThenEndsTheEditing) {
  drag(card("cpu"), card("agentTokens"));
  press(card("cpu"), Qt::Key_Escape);
  EXPECT_EQ(stored(), defaults);
  EXPECT_EQ(seen()[2], "cpu");
  press(card("cpu"), Qt::Key_Escape);
  EXPECT_FALSE(isShown("dashboard.edit.cpu"));
  EXPECT_FALSE(isShown("dashboard.hidden"));
}

TEST_F(OverviewEditing, hiddenCardsComeBackFromTheTrayAndResetRestoresAll) {
  click("dashboard.hidden.audio");
  EXPECT_EQ(stored().back(), "audio");
  EXPECT_FALSE(isShown("dashboard.hidden.audio"));
  click("dashboard.overview.reset");
  EXPECT_EQ(stored(), defaults);
  EXPECT_FALSE(part("dashboard.overview.reset").isEnabled());
  click("dashboard.overview.undo");
  EXPECT_EQ(stored().back(), "audio");
}

TEST_F(OverviewEditing, aLayoutThatCannotBeStoredIsPutBackAndTold) {
  services_.domain.refuseWrites(PreferenceProblem{PreferenceProblem::Kind::unwritable, "/x", 30, {}});
  press(card("cpu"), Qt::Key_Delete);
  EXPECT_EQ(services_.actions.problem->kind, PreferenceProblem::Kind::unwritable);
  drag(card("cpu"), card("agentTokens"));
  mouse(card("cpu"), QEvent::MouseButtonRelease, QCursor::pos());
  settle();
  EXPECT_EQ(seen()[2], "cpu");
}

TEST_F(OverviewEditing, aLayoutOfAnotherProgramShowsAtOnceEvenDuringADrag) {
  drag(card("cpu"), card("battery"));
  services_.setByAnotherProgram("settings.dashboardLayout.v2",
                                PreferenceData{R"([{"kind":"cpu","size":"small","isEnabled":false},)"
                                               R"({"kind":"fan","size":"large","isEnabled":true}])"});
  settle();
  EXPECT_EQ(seen().front(), "fan");
  EXPECT_TRUE(isShown("dashboard.hidden.cpu"));
}

TEST_F(OverviewEditing, aCardHeldAtTheLowerEdgeScrollsThePage) {
  auto& area = part<QScrollArea>("dashboard.overview.scroll");
  CardHandles& held = card("cpu");
  const QPoint start = held.mapToGlobal(QPoint(20, 20));
  mouse(held, QEvent::MouseButtonPress, start);
  mouse(held, QEvent::MouseMove, area.viewport()->mapToGlobal(QPoint(60, area.viewport()->height() - 3)));
  const QPoint before = held.mapTo(window_.get(), QPoint());
  services_.timers.advance(0.1);
  EXPECT_GT(area.verticalScrollBar()->value(), 40);
  EXPECT_EQ(held.mapTo(window_.get(), QPoint()), before) << "the card did not stay under the pointer";
  mouse(held, QEvent::MouseButtonRelease, start);
  EXPECT_EQ(std::ranges::count_if(services_.timers.running(), [](const auto& timer) { return timer.interval < 0.1; }),
            0);
}

TEST_F(OverviewEditing, aNarrowWindowShowsTheCardsBelowEachOther) {
  window_->resize(680, 600);
  settle();
  const QWidget& grid = part("dashboard.grid");
  EXPECT_EQ(grid.y(), 0);
  int bottom = -14;
  for (const std::string& name : seen()) {
    const QWidget& slot = *card(name).parentWidget();
    EXPECT_EQ(slot.geometry().topLeft(), QPoint(0, bottom + 14)) << name;
    EXPECT_EQ(slot.width(), grid.width()) << name;
    bottom = slot.y() + slot.height();
  }
  EXPECT_EQ(grid.height(), bottom);
}

TEST_F(OverviewEditing, withoutAnyCardThePageSaysHowToGetThemBack) {
  for (const std::string& name : defaults) press(card(name.substr(0, name.find('+'))), Qt::Key_Delete);
  EXPECT_TRUE(stored().empty());
  EXPECT_FALSE(isShown("dashboard.overview.nothing"));
  click("dashboard.overview.edit");
  EXPECT_TRUE(isShown("dashboard.overview.nothing"));
}

TEST_F(OverviewEditing, anotherPageEndsIt) {
  press(*window_, Qt::Key_2, Qt::ControlModifier);
  press(*window_, Qt::Key_1, Qt::ControlModifier);
  EXPECT_FALSE(isShown("dashboard.edit.cpu"));
  EXPECT_EQ(part<QPushButton>("dashboard.overview.edit").text(), qtText("编辑"));
}

}  // namespace
}  // namespace quillmeter
