#include <QAbstractButton>

#include "demo/FakeServices.h"
#include "screenshots/Shot.h"
#include "ui/dashboard/DashboardWindow.h"
#include "ui/onboarding/OnboardingWindow.h"
#include "ui/popover/PopoverWindow.h"
#include "ui/settings/SettingsWindow.h"

namespace quillmeter {
namespace {

using Windows = std::vector<Shot>;

// Presses the button of that name; says so when there is none, so that a picture never shows another state unnoticed.
std::function<void(QWidget&, FakeServices&)> press(const char* name, int times = 1) {
  return [name, times](QWidget& window, FakeServices& services) {
    auto* button = window.findChild<QAbstractButton*>(QLatin1String(name));
    if (button == nullptr) qFatal("no button %s in %s", name, qPrintable(window.objectName()));
    for (int time = 0; time < times; ++time) button->click();
    services.settle();
  };
}

void addDashboard(Windows& shots) {
  const auto page = [](const char* id) {
    return [id](FakeServices& services) {
      auto window = std::make_unique<DashboardWindow>(services.ui);
      window->showPage(id);
      return window;
    };
  };
  constexpr QSize size(1040, 720);
  shots.push_back({"dashboard-overview", size, page("overview"), {}});
  shots.push_back({"dashboard-edit", size, page("overview"), press("dashboard.overview.edit")});
  shots.push_back({"dashboard-agents", size, page("agents"), {}});
  shots.push_back({"dashboard-agents-week", size, page("agents"), press("dashboard.agents.range.week")});
  shots.push_back({"dashboard-screentime", size, page("screenTime"), {}});
  shots.push_back({"dashboard-screentime-week", size, page("screenTime"), press("screenTime.kind.week")});
}

void addSettings(Windows& shots) {
  for (const char* id : {"general", "menuBar", "components", "agents", "screenTime", "about"}) {
    const auto open = [id](FakeServices& services) {
      auto window = std::make_unique<SettingsWindow>(services.ui);
      window->showPage(id);
      return window;
    };
    shots.push_back({"settings-" + QString(id).toLower().toStdString(), QSize(780, 580), open, {}});
  }
}

void addOnboarding(Windows& shots) {
  const auto open = [](FakeServices& services) { return std::make_unique<OnboardingWindow>(services.ui); };
  constexpr int steps = 4;
  for (int step = 1; step <= steps; ++step) {
    shots.push_back({"onboarding-" + std::to_string(step), QSize(620, 520), open, press("onboarding.next", step - 1)});
  }
}

void addPopover(Windows& shots) {
  shots.push_back(
      {"popover", {}, [](FakeServices& services) { return std::make_unique<PopoverWindow>(services.ui); }, {}});
}

}  // namespace

std::vector<Shot> windowShots() {
  Windows shots;
  addDashboard(shots);
  addSettings(shots);
  addOnboarding(shots);
  addPopover(shots);
  return shots;
}

}  // namespace quillmeter
