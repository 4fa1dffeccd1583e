#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "ui/theme/QuillStyle.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/BarChart.h"
#include "ui/widgets/BarChartLayout.h"
#include "ui/widgets/Card.h"
#include "ui/widgets/Chooser.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/LevelBar.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/RingGauge.h"
#include "ui/widgets/ScrollPage.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/Sparkline.h"
#include "ui/widgets/SymbolButton.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter::test {
namespace {

// Counts what a widget does after it was shown.
class Watcher : public QObject {
 public:
  explicit Watcher(QWidget& widget) { widget.installEventFilter(this); }
  int painted = 0;
  int laidOut = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    painted += event->type() == QEvent::Paint;
    laidOut += event->type() == QEvent::LayoutRequest;
    return QObject::eventFilter(watched, event);
  }
};

class Widgets : public testing::Test {
 protected:
  Widgets() { Theme::installStyle(); }

  // In a window that is shown and active.
  template <typename Widget>
  Widget& shown(Widget* widget) {
    window_.setLayout(new QVBoxLayout);
    window_.layout()->addWidget(widget);
    window_.resize(400, 300);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    settle();
    return *widget;
  }
  static void settle() {
    for (int round = 0; round < 3; ++round) {
      QCoreApplication::sendPostedEvents();
      QCoreApplication::processEvents();
    }
  }
  template <typename Change>
  static int paintsAfter(QWidget& widget, const Change& change) {
    Watcher watcher(widget);
    change();
    settle();
    return watcher.painted;
  }
  static const QAccessibleInterface& accessible(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
  }

  QWidget window_;
};

TEST_F(Widgets, gaugesPaintOnlyWhatCanBeSeen) {
  auto* held = new QWidget;
  auto* column = new QVBoxLayout(held);
  auto* ring = new RingGauge;
  auto* bar = new LevelBar;
  auto* line = new Sparkline;
  for (QWidget* widget : std::vector<QWidget*>{ring, bar, line}) column->addWidget(widget);
  ring->setFraction(0.5);
  bar->setFraction(0.5);
  const std::vector<double> values = {0.1, 0.5, 0.9};
  line->setValues(values);
  shown(held);

  EXPECT_EQ(paintsAfter(*ring, [&] { ring->setFraction(0.50001); }), 0);
  EXPECT_GT(paintsAfter(*ring, [&] { ring->setFraction(0.52); }), 0);
  EXPECT_GT(paintsAfter(*ring, [&] { ring->setFraction(std::nullopt); }), 0);
  EXPECT_EQ(paintsAfter(*bar, [&] { bar->setFraction(0.5002); }), 0);
  EXPECT_GT(paintsAfter(*bar, [&] { bar->setFraction(0.6); }), 0);
  EXPECT_EQ(paintsAfter(*line, [&] { line->setValues(std::vector{0.1, 0.5001, 0.9}); }), 0);
  EXPECT_GT(paintsAfter(*line, [&] { line->setValues(std::vector{0.1, 0.2, 0.9}); }), 0);
  EXPECT_GT(paintsAfter(*line, [&] { line->setValues(std::vector{0.1, 0.2}); }), 0);

  ring->setFraction(std::nan(""));
  bar->setFraction(7);
  EXPECT_EQ(ring->fraction(), 0);
  EXPECT_EQ(bar->fraction(), 1);
}

TEST_F(Widgets, aFigureThatChangesMovesNothing) {
  auto* held = new QWidget;
  auto* row = new QHBoxLayout(held);
  auto* figure = new FigureLabel(TextRole::figure);
  figure->setText(QStringLiteral("11%"));
  row->addWidget(figure);
  row->addWidget(new QPushButton(QStringLiteral("after")));
  shown(held);

  Watcher layout(*held);
  EXPECT_EQ(paintsAfter(*figure, [&] { figure->setText(QStringLiteral("11%")); }), 0);
  EXPECT_EQ(paintsAfter(*figure, [&] { figure->setText(QStringLiteral("48%")); }), 1);
  EXPECT_EQ(layout.laidOut, 0);
  figure->setWidestText(QStringLiteral("100%"));
  settle();
  layout.laidOut = 0;
  figure->setText(QStringLiteral("9%"));
  figure->setText(QStringLiteral("100%"));
  settle();
  EXPECT_EQ(layout.laidOut, 0);
  EXPECT_EQ(figure->minimumSizeHint().width(), figure->sizeHint().width());
}

TEST_F(Widgets, onlyTheUsersChoiceIsToldAndArrowKeysMoveIt) {
  auto* control = new SegmentedControl;
  std::vector<std::string> chosen;
  control->setHandler([&](const std::string& id) { chosen.push_back(id); });
  control->setSegments({{"today", "Today"}, {"week", "Week"}, {"month", "Month"}});
  control->setChosen("week");
  shown(control);
  EXPECT_TRUE(chosen.empty());
  const auto buttons = control->findChildren<QAbstractButton*>();
  ASSERT_EQ(buttons.size(), 3);
  EXPECT_EQ(accessible(*buttons[1]).role(), QAccessible::RadioButton);

  buttons[1]->setFocus(Qt::TabFocusReason);
  QTest::keyClick(buttons[1], Qt::Key_Right);
  QTest::mouseClick(buttons[0], Qt::LeftButton);
  EXPECT_EQ(chosen, (std::vector<std::string>{"month", "today"}));
  EXPECT_EQ(control->chosen(), "today");

  control->setSegments({{"today", "今天"}, {"week", "本周"}});
  EXPECT_EQ(control->chosen(), "today");
  EXPECT_TRUE(buttons[0]->isChecked());
  control->setChosen("gone");
  EXPECT_FALSE(buttons[0]->isChecked());
  EXPECT_EQ(chosen.size(), 2U);
}

TEST_F(Widgets, aChooserKeepsItsChoiceThroughNewTitles) {
  auto* chooser = new Chooser;
  std::vector<std::string> chosen;
  chooser->setHandler([&](const std::string& id) { chosen.push_back(id); });
  chooser->setChoices({{"a", "甲"}, {"b", "乙"}});
  chooser->setChosen("b");
  chooser->setChoices({{"a", "A"}, {"b", "B"}});
  EXPECT_EQ(chooser->currentText(), "B");
  EXPECT_TRUE(chosen.empty());
  shown(chooser);
  chooser->setFocus();
  QTest::keyClick(chooser, Qt::Key_Up);
  EXPECT_EQ(chosen, std::vector<std::string>{"a"});
  chooser->setChosen("gone");
  EXPECT_EQ(chooser->currentIndex(), -1);
}

TEST_F(Widgets, aSwitchIsUsedByKeyAndSaysItsState) {
  SettingsGroup* group = new SettingsGroup;
  auto* toggle = new ToggleSwitch;
  group->addRow(toggle)->setTitle(QStringLiteral("登录时启动"));
  shown(group);
  int clicks = 0;
  QObject::connect(toggle, &QAbstractButton::clicked, toggle, [&] { ++clicks; });
  toggle->setFocus(Qt::TabFocusReason);
  QTest::keyClick(toggle, Qt::Key_Space);
  EXPECT_TRUE(toggle->isChecked());
  QTest::mouseClick(toggle, Qt::LeftButton, {}, QPoint(2, 2));
  EXPECT_FALSE(toggle->isChecked());
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(accessible(*toggle).role(), QAccessible::CheckBox);
  EXPECT_EQ(accessible(*toggle).text(QAccessible::Name), QStringLiteral("登录时启动"));
}

TEST_F(Widgets, aChartIsReadByKeyAndByPointer) {
  auto* chart = new BarChart;
  std::vector<ChartBar> bars(24);
  for (std::size_t hour = 0; hour < bars.size(); ++hour)
    bars[hour] = {.value = static_cast<double>(hour),
                  .label = QString::number(hour) + ":00",
                  .description = QString::number(hour) + " o'clock",
                  .isCurrent = hour == 8};
  chart->setBars(bars);
  int chosen = -1;
  chart->setChosen([&](int index) { chosen = index; });
  shown(chart);
  chart->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(chart->highlighted(), 8);
  QTest::keyClick(chart, Qt::Key_Right);
  QTest::keyClick(chart, Qt::Key_Return);
  EXPECT_EQ(chosen, 9);
  EXPECT_EQ(accessible(*chart).text(QAccessible::Description), QStringLiteral("9 o'clock"));
  QTest::keyClick(chart, Qt::Key_End);
  QTest::keyClick(chart, Qt::Key_Right);
  EXPECT_EQ(chart->highlighted(), 23);
  QTest::mouseMove(chart, QPoint(1, chart->height() / 2));
  EXPECT_EQ(chart->highlighted(), 0);
  settle();
  EXPECT_EQ(paintsAfter(*chart, [&] { chart->setBars(bars); }), 0);
  bars.resize(5);
  QTest::keyClick(chart, Qt::Key_End);
  chart->setBars(bars);
  EXPECT_EQ(chart->highlighted(), std::nullopt);
}

TEST_F(Widgets, theLabelsOfAChartNeverRunIntoEachOther) {
  std::vector<ChartBar> bars(30);
  for (std::size_t day = 0; day < bars.size(); ++day) bars[day] = {.value = 3, .label = QString::fromUtf8("12月28日")};
  for (const double width : {160.0, 300.0, 900.0, 3'000.0}) {
    const BarChartLayout layout(QRectF(0, 0, width, 180), bars, fontFor(TextRole::caption));
    ASSERT_FALSE(layout.labelled().empty());
    QRectF before;
    for (const std::size_t index : layout.labelled()) {
      const QRectF label = layout.label(index);
      EXPECT_FALSE(label.intersects(before)) << width << " " << index;
      EXPECT_TRUE(label.left() >= 0 && label.right() <= width) << width << " " << index;
      before = label;
    }
  }
  const std::vector<std::pair<double, double>> tops = {{0, 0},      {1, 1},    {1.2, 1.5}, {12'345, 15'000},
                                                       {0.09, 0.1}, {81, 100}, {7e9, 8e9}, {-1, 0}};
  for (const auto& [value, top] : tops) EXPECT_NEAR(roundedUp(value), top, top * 1e-9) << value;
}

TEST_F(Widgets, aNoticeComesAndGoesWithItsText) {
  auto* notice = new Notice;
  auto& holder = shown(new QWidget);
  notice->setParent(&holder);
  EXPECT_TRUE(notice->isHidden());
  int acted = 0;
  notice->setAction(QStringLiteral("重试"), [&] { ++acted; });
  notice->show(Notice::Kind::error, QStringLiteral("无法读取。"));
  EXPECT_FALSE(notice->isHidden());
  EXPECT_EQ(accessible(*notice).text(QAccessible::Name), QStringLiteral("无法读取。"));
  QTest::mouseClick(notice->findChild<QPushButton*>(), Qt::LeftButton);
  EXPECT_EQ(acted, 1);
  notice->show(Notice::Kind::error, {});
  EXPECT_TRUE(notice->isHidden());
  EXPECT_TRUE(notice->text().isEmpty());
}

TEST_F(Widgets, aPageShowsWhatTheKeyboardReaches) {
  auto* page = new ScrollPage(500);
  std::vector<QPushButton*> buttons;
  for (int number = 0; number < 30; ++number) {
    buttons.push_back(new QPushButton(QString::number(number)));
    page->column()->addWidget(buttons.back());
  }
  shown(page);
  QTest::keyClick(&window_, Qt::Key_Tab);
  for (int number = 0; number < 25; ++number) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  QWidget* focused = QApplication::focusWidget();
  EXPECT_GT(page->verticalScrollBar()->value(), 0);
  EXPECT_TRUE(page->viewport()->rect().contains(QRect(focused->mapTo(page->viewport(), QPoint()), focused->size())));
  EXPECT_EQ(page->horizontalScrollBar()->maximum(), 0);
}

TEST_F(Widgets, everyPaintedWidgetSaysWhatItIs) {
  FigureLabel figure;
  figure.setText(QStringLiteral("42%"));
  EXPECT_EQ(accessible(figure).role(), QAccessible::StaticText);
  EXPECT_EQ(accessible(figure).text(QAccessible::Name), QStringLiteral("42%"));
  figure.setAccessibleName(QStringLiteral("CPU 42%"));
  EXPECT_EQ(accessible(figure).text(QAccessible::Name), QStringLiteral("CPU 42%"));

  RingGauge ring;
  ring.setFraction(0.42);
  ring.setText(QStringLiteral("42%"));
  EXPECT_EQ(accessible(ring).role(), QAccessible::ProgressBar);
  EXPECT_EQ(accessible(ring).text(QAccessible::Value), QStringLiteral("42%"));
  auto& values = *QAccessible::queryAccessibleInterface(&ring)->valueInterface();
  EXPECT_DOUBLE_EQ(values.currentValue().toDouble(), 42);

  Card card;
  card.setHeader("cpu", "4C8DFF", QStringLiteral("CPU"));
  EXPECT_EQ(accessible(card).role(), QAccessible::Grouping);
  EXPECT_EQ(accessible(card).text(QAccessible::Name), QStringLiteral("CPU"));
  SymbolButton button("gearshape");
  button.setDescription(QStringLiteral("设置"));
  EXPECT_EQ(accessible(button).role(), QAccessible::Button);
  EXPECT_EQ(accessible(button).text(QAccessible::Name), QStringLiteral("设置"));
}

}  // namespace
}  // namespace quillmeter::test
