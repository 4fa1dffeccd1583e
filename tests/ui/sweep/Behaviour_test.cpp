// Every window and page: what all of them have to keep to.
#include <map>
#include <set>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QScrollArea>
#include <QTest>

#include "sweep/OpenWindow.h"
#include "sweep/TextCatalogue.h"
#include "sweep/VisibleText.h"

namespace quillmeter::test {
namespace {

bool takesKeys(const QWidget& widget) {
  return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isEnabled() && widget.focusProxy() == nullptr;
}

// Those that the Tab key stops at, but for areas that only scroll.
std::vector<QWidget*> controls(QWidget& window) {
  std::vector<QWidget*> found;
  for (QWidget* widget : visibleWidgets(window)) {
    if (takesKeys(*widget) && dynamic_cast<QScrollArea*>(widget) == nullptr) found.push_back(widget);
  }
  return found;
}

TEST(Controls, haveAccessibleNames) {
  Desk desk;
  for (const Shot& shot : allShots()) {
    const auto window = desk.open(shot);
    for (QWidget* control : controls(*window)) {
      QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(control);
      ASSERT_NE(interface, nullptr) << shot.name << ": " << placeOf(*control);
      EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty()) << shot.name << ": " << placeOf(*control);
    }
  }
}

// Of a group of which one is chosen, Tab stops at one.
bool isReached(QWidget* control, const std::set<QWidget*>& reached) {
  if (reached.contains(control)) return true;
  const auto* button = dynamic_cast<QAbstractButton*>(control);
  if (button == nullptr || !button->isCheckable()) return false;
  return std::ranges::any_of(reached, [control](const QWidget* other) {
    return other->parentWidget() == control->parentWidget() && typeid(*other) == typeid(*control);
  });
}

TEST(Controls, areReachedByTheTabKey) {
  Desk desk;
  for (const Shot& shot : allShots()) {
    const auto window = desk.open(shot);
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get())) << shot.name;
    const auto all = controls(*window);
    std::set<QWidget*> reached;
    for (std::size_t step = 0; step < 2 * all.size() + 4; ++step) {
      QWidget* focus = QApplication::focusWidget();
      if (focus != nullptr) reached.insert(focus);
      QTest::keyClick(focus != nullptr ? focus : window.get(), Qt::Key_Tab);
    }
    for (QWidget* control : all) EXPECT_TRUE(isReached(control, reached)) << shot.name << ": " << placeOf(*control);
  }
}

std::string line(const VisibleText& text) {
  return text.place + ": " + text.text.toStdString();
}

// What one of the two windows says and the other does not.
std::vector<std::string> differences(QWidget& first, QWidget& second) {
  std::multiset<std::string> texts;
  for (const VisibleText& text : visibleTexts(first)) texts.insert(line(text));
  std::vector<std::string> different;
  for (const VisibleText& text : visibleTexts(second)) {
    const auto known = texts.find(line(text));
    if (known == texts.end()) {
      different.push_back("only in a new window: " + line(text));
    } else {
      texts.erase(known);
    }
  }
  for (const std::string& text : texts) different.push_back("only in the open window: " + text);
  return different;
}

// What is the same in every language: languages' own names.
bool isOfNoLanguage(const QString& text) {
  return text == QStringLiteral("简体中文") || text == QStringLiteral("English");
}

void expectNoChinese(QWidget& window, const std::string& name) {
  for (const VisibleText& text : visibleTexts(window)) {
    if (holdsChinese(text.text) && !isOfNoLanguage(text.text)) ADD_FAILURE() << name << ": " << line(text);
  }
}

TEST(Language, changesInOpenWindowsAsInNewOnes) {
  for (const std::string first : {"zh-Hans", "en"}) {
    const std::string second = first == "en" ? "zh-Hans" : "en";
    Desk desk(first);
    for (const Shot& shot : allShots()) {
      const auto window = desk.open(shot);
      desk.services.useLanguage(second);
      desk.services.store.refreshAll();
      desk.settle();
      const auto fresh = desk.open(shot);
      for (const std::string& text : differences(*window, *fresh)) {
        ADD_FAILURE() << shot.name << " from " << first << ": " << text;
      }
      if (second == "en") expectNoChinese(*window, shot.name);
      desk.services.useLanguage(first);
      desk.services.store.refreshAll();
      desk.settle();
    }
  }
}

TEST(Language, leavesNoEnglishTextInAChineseWindow) {
  std::map<QString, QString> english;  // texts whose Chinese one differs
  for (const auto& [chinese, translation] : textCatalogue()) {
    if (chinese != translation && !textCatalogue().contains(translation)) english[translation] = chinese;
  }
  Desk desk;
  for (const Shot& shot : allShots()) {
    const auto window = desk.open(shot);
    for (const VisibleText& text : visibleTexts(*window)) {
      if (isOfNoLanguage(text.text)) continue;
      EXPECT_FALSE(english.contains(text.text)) << shot.name << ": " << line(text);
    }
  }
}

// Says how many seconds old the last scan is.
bool countsSeconds(const std::string& place) {
  return place == "popover" || place == "popover/popover.footer" || place == "popover.footer/popover.age";
}

// Counts what is painted anew.
class PaintCounter final : public QObject {
 public:
  PaintCounter() { QApplication::instance()->installEventFilter(this); }
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    const auto* widget = dynamic_cast<QWidget*>(object);
    if (widget != nullptr && !countsSeconds(placeOf(*widget))) ++paints[placeOf(*widget)];
    return false;
  }
  std::map<std::string, int> paints;
};

TEST(Painting, restsWhileNothingChanges) {
  MachineDescription machine = describedMachine();
  for (auto* series : {&machine.processorLoad, &machine.memory.used, &machine.network.receivedPerSecond,
                       &machine.network.sentPerSecond}) {
    series->erase(series->begin(), series->end() - 1);
  }
  machine.screenTime.isEnabled = false;
  constexpr int ticks = 10;
  constexpr double period = 2;
  for (const Shot& shot : allShots()) {
    Desk desk("zh-Hans", machine);
    const auto window = desk.open(shot);
    desk.services.advance(period);
    desk.settle();
    PaintCounter counter;
    for (int tick = 0; tick < ticks; ++tick) {
      desk.services.advance(period);
      desk.settle();
    }
    for (const auto& [place, count] : counter.paints) ADD_FAILURE() << shot.name << ": " << place << " " << count;
    desk.services.useLanguage("en");
    desk.settle();
    EXPECT_TRUE(!counter.paints.empty() || shot.name == "tray") << shot.name << ": paints are not counted";
  }
}

TEST(Windows, leaveNothingBehind) {
  Desk desk;
  for (const Shot& shot : allShots()) {
    desk.open(shot).reset();  // what is made once for the program is made now
    desk.settle();
    const auto before = QApplication::allWidgets().size();
    const auto timers = desk.services.timers.running().size();
    desk.open(shot).reset();
    desk.settle();
    EXPECT_EQ(QApplication::allWidgets().size(), before) << shot.name;
    EXPECT_EQ(desk.services.timers.running().size(), timers) << shot.name;
  }
}

}  // namespace
}  // namespace quillmeter::test
