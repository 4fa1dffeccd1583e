#include "ui/popover/PopoverWindow.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QScrollArea>
#include <QTest>

#include "demo/FakeServices.h"
#include "platform/fake/FakeDesktop.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/SettingsKeys.h"
#include "ui/cards/MonitorCard.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter {

namespace {

class Popover : public testing::Test {
 protected:
  void SetUp() override {
    services_.start();
    window_ = new PopoverWindow(services_.ui);
    window_->setAttribute(Qt::WA_DeleteOnClose);
    window_->showAt(QRect(700, 0, 22, 22));
    QCoreApplication::processEvents();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
  }
  void TearDown() override { delete window_; }

  // Lets what was posted happen, also the deletion of a closed window.
  static void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }
  std::vector<MonitorCard*> cards() const {
    std::vector<MonitorCard*> found;
    for (QWidget* widget : window_->findChildren<QWidget*>()) {
      if (auto* card = dynamic_cast<MonitorCard*>(widget)) found.push_back(card);
    }
    return found;
  }
  std::string kinds() const {
    std::string names;
    for (const MonitorCard* card : cards()) names.append(rawValue(card->kind())).append(" ");
    return names;
  }
  // By name: our widgets have no meta-object of their own.
  template <typename Widget>
  Widget* child(const char* name) const {
    return dynamic_cast<Widget*>(window_->findChild<QWidget*>(name));
  }
  void setLayout(const std::vector<DashboardCardConfig>& cards) {
    ASSERT_TRUE(services_.preferences.setData(SettingsKeys::menuBarLayout.key, *DashboardLayoutStorage::encode(cards)));
    settle();
  }
  static std::vector<DashboardCardConfig> only(std::initializer_list<DashboardCardConfig> shown) {
    std::vector<DashboardCardConfig> layout = shown;
    for (const MonitorComponentKind kind : allMonitorComponentKinds) {
      const auto known = [kind](const DashboardCardConfig& card) { return card.kind == kind; };
      if (std::none_of(layout.begin(), layout.end(), known)) layout.push_back({kind, DashboardCardSize::small, false});
    }
    return layout;
  }

  FakeServices services_;
  FakeDesktopAppearance appearance_;
  Theme theme_{*qApp, services_.preferences, appearance_};
  QPointer<PopoverWindow> window_;
};

TEST_F(Popover, showsTheEnabledCardsOfTheMenuBarLayoutInOrder) {
  EXPECT_EQ(kinds(), "agentTokens cpu memory battery agentLimits ");
  EXPECT_EQ(window_->width(), PopoverWindow::popoverWidth);
  const auto* scroll = child<QScrollArea>("popover.scroll");
  EXPECT_EQ(scroll->widget()->height(), scroll->viewport()->height()) << "all of it is in view";
}

TEST_F(Popover, closesOnEscapeAndWhenItLosesTheFocus) {
  int left = 0;
  window_->setLeft([&left] { ++left; });
  QTest::keyClick(window_, Qt::Key_Escape);
  settle();
  EXPECT_TRUE(window_.isNull());
  EXPECT_EQ(left, 0) << "the user may open it again at once";
  window_ = new PopoverWindow(services_.ui);
  window_->setLeft([&left] { ++left; });
  window_->setAttribute(Qt::WA_DeleteOnClose);
  window_->showAt({});
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  settle();
  EXPECT_TRUE(window_.isNull());
  EXPECT_EQ(left, 1);
}

TEST_F(Popover, followsTheLayoutAndItsOwnHeight) {
  const int before = window_->height();
  setLayout(only({{MonitorComponentKind::disk, DashboardCardSize::small, true}}));
  EXPECT_EQ(kinds(), "disk ");
  EXPECT_LT(window_->height(), before);
  EXPECT_GT(cards().front()->width(), PopoverWindow::popoverWidth * 3 / 4) << "without a neighbour it takes the row";
  setLayout(only({}));
  EXPECT_TRUE(child<QLabel>("popover.empty")->isVisible());
}

TEST_F(Popover, anUntouchedLayoutKeepsItsCards) {
  const auto before = cards();
  setLayout(DashboardLayoutStorage::defaultLayout(ComponentPlacement::menuBar));
  EXPECT_EQ(cards(), before);
}

TEST_F(Popover, scrollsWhatIsHigherThanFourFifthsOfTheScreen) {
  std::vector<DashboardCardConfig> all;
  for (const MonitorComponentKind kind : allMonitorComponentKinds)
    all.push_back({kind, DashboardCardSize::large, true});
  setLayout(all);
  EXPECT_LE(window_->height(), window_->screen()->availableGeometry().height() * 4 / 5);
  const auto* scroll = child<QScrollArea>("popover.scroll");
  EXPECT_GT(scroll->widget()->height(), scroll->viewport()->height());
  EXPECT_EQ(scroll->widget()->width(), scroll->viewport()->width());
  EXPECT_TRUE(child<QAbstractButton>("popover.dashboard")->isVisible()) << "the ways out stay in view";
}

TEST_F(Popover, everyCardFitsItsWidthInBothLanguages) {
  for (const DashboardCardSize size : {DashboardCardSize::small, DashboardCardSize::large}) {
    std::vector<DashboardCardConfig> all;
    for (const MonitorComponentKind kind : allMonitorComponentKinds) all.push_back({kind, size, true});
    setLayout(all);
    for (const char* language : {"zh-Hans", "en"}) {
      services_.useLanguage(language);
      settle();
      for (const MonitorCard* card : cards()) {
        EXPECT_LE(card->minimumSizeHint().width(), card->width()) << rawValue(card->kind()) << language;
        EXPECT_LE(card->mapTo(window_, QPoint(card->width(), 0)).x(), window_->width() - 10)
            << rawValue(card->kind()) << language;
      }
    }
  }
  services_.useLanguage("zh-Hans");
}

TEST_F(Popover, saysHowOldTheScanIsAndWhatIsWrongWithIt) {
  const auto* age = child<FigureLabel>("popover.age");
  const auto* message = child<QLabel>("popover.message");
  EXPECT_TRUE(age->text().endsWith("更新")) << age->text().toStdString();
  services_.set(SettingsKeys::tokenMonitoringEnabled.key, false);
  services_.advance(2);
  settle();
  EXPECT_EQ(message->text(), "Agent Token 监控已关闭");
  EXPECT_TRUE(message->isVisible());
  services_.useLanguage("en");
  settle();
  EXPECT_TRUE(age->text().startsWith("Updated")) << age->text().toStdString();
  EXPECT_FALSE(message->text().contains("监控"));
  services_.useLanguage("zh-Hans");
}

TEST_F(Popover, itsButtonsLeadOutAndCloseIt) {
  QTest::mouseClick(child<QAbstractButton>("popover.refresh"), Qt::LeftButton);
  settle();
  ASSERT_FALSE(window_.isNull()) << "refreshing stays";
  QTest::mouseClick(child<QAbstractButton>("popover.dashboard"), Qt::LeftButton);
  settle();
  EXPECT_TRUE(window_.isNull());
  EXPECT_EQ(services_.actions.asked, std::vector<std::string>{"dashboard"});
}

TEST_F(Popover, hearsNothingOnceItIsClosed) {
  window_->setAttribute(Qt::WA_DeleteOnClose, false);
  window_->close();
  const QString age = child<FigureLabel>("popover.age")->text();
  services_.advance(20);
  EXPECT_EQ(child<FigureLabel>("popover.age")->text(), age);
}

}  // namespace

}  // namespace quillmeter
