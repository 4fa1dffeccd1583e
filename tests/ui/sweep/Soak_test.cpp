// Half an hour of anything: random clicks and keys in all windows, on a machine that changes at random.
#include <cstdlib>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QWindow>

#include "sweep/MachineChanges.h"
#include "sweep/OpenWindow.h"
#include "sweep/VisibleText.h"

namespace quillmeter::test {
namespace {

constexpr double simulatedSeconds = 30 * 60;
constexpr std::size_t mostWindows = 3;

class RandomUser {
 public:
  RandomUser(Desk& desk, std::mt19937& random) : desk_(desk), random_(random), shots_(allShots()) {}
  ~RandomUser() { closeAll(); }

  void act() {
    forgetClosed();
    if (windows_.empty() || (windows_.size() < mostWindows && below(20) == 0)) open();
    if (below(40) == 0) close();
    QWidget* window = target();
    if (window == nullptr) return;
    if (below(3) == 0) {
      pressKey(*window);
    } else if (below(12) == 0) {
      window->resize(window->minimumSizeHint() + QSize(below(600), below(500)));
    } else {
      usePointer(*window);
    }
    desk_.settle();
  }
  void closeAll() {
    while (!windows_.empty()) close();
    for (QWidget* left : QApplication::topLevelWidgets()) {
      if (left->isVisible()) left->close();
    }
    desk_.settle();
  }

 private:
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  void open() {
    Shot shot = shots_[static_cast<std::size_t>(below(static_cast<int>(shots_.size())))];
    shot.prepare = {};  // buttons may be off by now
    windows_.emplace_back(desk_.open(shot).release());
  }
  void close() {
    if (windows_.empty()) return;
    delete windows_.back();
    windows_.pop_back();
  }
  void forgetClosed() {
    for (const QPointer<QWidget>& window : windows_) {
      if (window != nullptr && !window->isVisible()) delete window;
    }
    std::erase_if(windows_, [](const QPointer<QWidget>& window) { return window == nullptr; });
  }

  // What has the user's attention: a menu or dialog before a window.
  QWidget* target() {
    if (QWidget* popup = QApplication::activePopupWidget()) return popup;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (windows_.empty()) return nullptr;
    return windows_[static_cast<std::size_t>(below(static_cast<int>(windows_.size())))];
  }

  void pressKey(QWidget& window) {
    static constexpr Qt::Key keys[] = {Qt::Key_Tab,  Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Space,  Qt::Key_Return,
                                       Qt::Key_Up,   Qt::Key_Down,   Qt::Key_Left,    Qt::Key_Right,  Qt::Key_Home,
                                       Qt::Key_End,  Qt::Key_PageUp, Qt::Key_Delete,  Qt::Key_Escape, Qt::Key_Z,
                                       Qt::Key_Plus, Qt::Key_1,      Qt::Key_Menu};
    static constexpr Qt::KeyboardModifier modifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier,
                                                         Qt::ShiftModifier, Qt::AltModifier};
    window.activateWindow();
    if (window.windowHandle() == nullptr) return;
    QTest::keyClick(window.windowHandle(), keys[below(static_cast<int>(std::size(keys)))],
                    modifiers[below(static_cast<int>(std::size(modifiers)))]);
  }

  // Goes through the window system, as a click does that may close the window under it.
  void usePointer(QWidget& window) {
    const QPointer<QWindow> surface = window.windowHandle();
    if (surface == nullptr) return;
    const auto widgets = visibleWidgets(window);
    const QWidget* widget = widgets[static_cast<std::size_t>(below(static_cast<int>(widgets.size())))];
    const QPoint place =
        widget->mapTo(&window, QPoint(below(std::max(widget->width(), 1)), below(std::max(widget->height(), 1))));
    if (!window.rect().contains(place)) return;  // scrolled out of sight
    const Qt::MouseButton button = below(8) == 0 ? Qt::RightButton : Qt::LeftButton;
    QTest::mouseMove(surface, place);
    if (surface != nullptr) QTest::mousePress(surface, button, {}, place);
    if (surface != nullptr && below(4) == 0)
      QTest::mouseMove(surface, place + QPoint(below(200) - 100, below(200) - 100));
    if (surface != nullptr) QTest::mouseRelease(surface, button, {}, place);
  }

  Desk& desk_;
  std::mt19937& random_;
  const std::vector<Shot> shots_;
  std::vector<QPointer<QWidget>> windows_;
};

TEST(Soak, survivesHalfAnHourOfAnything) {
  const char* given = std::getenv("QUILLMETER_SOAK_SEED");
  const auto seed = given == nullptr ? 20'261'121U : static_cast<unsigned>(std::strtoul(given, nullptr, 10));
  std::printf("QUILLMETER_SOAK_SEED=%u\n", seed);
  std::fflush(stdout);
  std::mt19937 random(seed);
  Desk desk;
  const auto widgetsBefore = QApplication::allWidgets().size();
  {
    MachineChanges changes(desk.services, random);
    RandomUser user(desk, random);
    constexpr double step = 1;
    constexpr int actsInAStep = 2;
    for (double passed = 0; passed < simulatedSeconds; passed += step) {
      for (int act = 0; act < actsInAStep; ++act) user.act();
      if (std::uniform_int_distribution<int>(0, 3)(random) == 0) changes.makeOne();
      desk.services.advance(step);
      desk.settle();
    }
  }
  desk.settle();
  constexpr int keptByTheToolkit = 6;  // tooltip, hidden menus' windows
  EXPECT_LE(QApplication::allWidgets().size(), widgetsBefore + keptByTheToolkit);
}

}  // namespace
}  // namespace quillmeter::test
