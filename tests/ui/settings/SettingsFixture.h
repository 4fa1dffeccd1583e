#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include "demo/FakeServices.h"
#include "ui/settings/SettingsWindow.h"
#include "ui/theme/QtText.h"

namespace quillmeter::test {

// A settings window over a described machine.
class SettingsFixture : public testing::Test {
 protected:
  void open(std::string_view page, MachineDescription machine = {}) {
    services = std::make_unique<FakeServices>(std::move(machine));
    services->start();
    window = std::make_unique<SettingsWindow>(services->ui);
    window->showPage(page);
    window->show();
    QApplication::processEvents();
  }
  ~SettingsFixture() override {
    window.reset();
    if (services) services->useLanguage("zh-Hans");
  }

  template <typename Widget = QWidget>
  Widget& find(const std::string& name) const {
    auto* widget = dynamic_cast<Widget*>(window->findChild<QWidget*>(qtText(name)));
    if (widget == nullptr) throw std::runtime_error("no widget " + name);
    return *widget;
  }
  QAbstractButton& button(const std::string& name) const { return find<QAbstractButton>(name); }
  // Whether it was hidden itself; whether the page scrolls it out of sight does not matter.
  bool isShown(const std::string& name) const { return find(name).isVisibleTo(window.get()); }
  std::string text(const std::string& key) const { return services->preferences.string(key).value_or(""); }
  void refuseWrites() {
    services->domain.refuseWrites(PreferenceProblem{.kind = PreferenceProblem::Kind::unwritable, .path = "/full"});
  }

  std::unique_ptr<FakeServices> services;
  std::unique_ptr<SettingsWindow> window;
};

}  // namespace quillmeter::test
