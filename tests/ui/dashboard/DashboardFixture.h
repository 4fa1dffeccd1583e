#pragma once

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <QApplication>
#include <QLabel>
#include <QProxyStyle>
#include <QTest>

#include "demo/FakeServices.h"
#include "preferences/DashboardLayoutStorage.h"
#include "ui/dashboard/DashboardWindow.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter {

class StillStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
  }
};

// A dashboard over the services of a described machine, without movements.
class DashboardTest : public testing::Test {
 protected:
  explicit DashboardTest(MachineDescription machine = {}) : services_(std::move(machine)) {
    QApplication::setStyle(new StillStyle);
  }

  DashboardWindow& open(int width = 1040) {
    window_ = std::make_unique<DashboardWindow>(services_.ui);
    window_->resize(width, 720);
    window_->show();
    settle();
    return *window_;
  }
  void settle() {
    for (int turn = 0; turn < 4; ++turn) {
      services_.settle();
      services_.timers.advance(0);
      QApplication::processEvents();
    }
  }
  template <typename Widget = QWidget>
  Widget* find(const std::string& name) {
    return dynamic_cast<Widget*>(window_->findChild<QWidget*>(qtText(name)));
  }
  template <typename Widget = QWidget>
  Widget& part(const std::string& name) {
    auto* found = find<Widget>(name);
    if (found == nullptr) throw std::runtime_error(name);
    return *found;
  }
  bool isShown(const std::string& name) {
    const QWidget* widget = find(name);
    return widget != nullptr && widget->isVisibleTo(window_.get());
  }
  std::string text(const std::string& name) { return part<FigureLabel>(name).text().toStdString(); }
  void press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&widget, key, modifiers);
    settle();
  }
  void click(const std::string& name) {
    QTest::mouseClick(&part(name), Qt::LeftButton);
    settle();
  }

  FakeServices services_;
  std::unique_ptr<DashboardWindow> window_;
};

}  // namespace quillmeter
