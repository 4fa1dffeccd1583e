#include "ui/dashboard/DashboardWindow.h"

#include <algorithm>
#include <array>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QStackedWidget>

#include "core/MonitorStore.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"
#include "ui/dashboard/AgentsPage.h"
#include "ui/dashboard/OverviewPage.h"
#include "ui/dashboard/Sidebar.h"
#include "ui/screentime/ScreenTimePage.h"

namespace quillmeter {

namespace {

constexpr QSize usualSize(1040, 720);
constexpr QSize smallestSize(680, 480);
constexpr int wideSidebarFrom = 860;  // width of the window

std::size_t indexOf(std::string_view page) {
  return static_cast<std::size_t>(std::ranges::find(Sidebar::pages, page) - std::begin(Sidebar::pages));
}

}  // namespace

struct DashboardWindow::Parts {
  const UiServices& services;
  Sidebar* sidebar = nullptr;
  QStackedWidget* stack = nullptr;
  std::array<QWidget*, std::size(Sidebar::pages)> pages = {};  // made when first turned to
  OverviewPage* overview = nullptr;
  Subscription preferenceChanges = {};
  bool wasShown = false;

  QWidget* page(std::size_t index) {
    QWidget*& page = pages[index];
    if (page == nullptr) {
      if (index == 0) page = overview = new OverviewPage(services, stack);
      if (index == 1) page = new AgentsPage(services, stack);
      if (index == 2) page = new ScreenTimePage(services, stack);
      stack->addWidget(page);
    }
    return page;
  }
};

DashboardWindow::DashboardWindow(const UiServices& services) : parts_(std::make_unique<Parts>(Parts{services})) {
  setObjectName(QStringLiteral("dashboard"));
  setWindowTitle(QStringLiteral("Quillmeter"));
  setMinimumSize(smallestSize);
  parts_->sidebar = new Sidebar(services,
                                {.chosen = [this](const std::string& page) { showPage(page); },
                                 .settings = [&services] { services.actions.showSettings(); }},
                                this);
  parts_->stack = new QStackedWidget(this);
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(0);
  line->addWidget(parts_->sidebar);
  line->addWidget(parts_->stack, 1);
  resize(usualSize);
  const std::string page = services.preferences.value(SettingsKeys::dashboardDestination);
  turnTo(indexOf(page) < parts_->pages.size() ? page : Sidebar::pages[0]);
  parts_->preferenceChanges =
      services.preferences.onChange([this](const std::vector<std::string>& keys, PreferenceChangeOrigin) {
        if (std::ranges::find(keys, SettingsKeys::dashboardDestination.key) == keys.end()) return;
        turnTo(parts_->services.preferences.value(SettingsKeys::dashboardDestination));
      });
}

DashboardWindow::~DashboardWindow() = default;

void DashboardWindow::turnTo(std::string_view page) {
  const std::size_t index = indexOf(page);
  if (index == parts_->pages.size()) return;
  parts_->stack->setCurrentWidget(parts_->page(index));
  parts_->sidebar->setChosen(page);
}

void DashboardWindow::showPage(std::string_view page) {
  if (indexOf(page) == parts_->pages.size()) return;
  turnTo(page);
  const UiServices& services = parts_->services;
  if (services.preferences.value(SettingsKeys::dashboardDestination) == page) return;
  const auto stored = services.preferences.set(SettingsKeys::dashboardDestination.key, std::string(page));
  if (!stored) services.actions.preferenceFailed(stored.error());
}

void DashboardWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!std::exchange(parts_->wasShown, true)) parts_->services.store.refreshAll();
}

void DashboardWindow::resizeEvent(QResizeEvent* event) {
  parts_->sidebar->setNarrow(width() < wideSidebarFrom);
  QWidget::resizeEvent(event);
}

bool DashboardWindow::pressWithControl(int key) {
  const UiServices& services = parts_->services;
  switch (key) {
    case Qt::Key_1:
    case Qt::Key_2:
    case Qt::Key_3:
      showPage(Sidebar::pages[key - Qt::Key_1]);
      return true;
    case Qt::Key_R:
      services.store.refreshAll();
      return true;
    case Qt::Key_Comma:
      services.actions.showSettings();
      return true;
    case Qt::Key_W:
      close();
      return true;
    case Qt::Key_Q:
      services.actions.quit();
      return true;
    default:
      return false;
  }
}

void DashboardWindow::keyPressEvent(QKeyEvent* event) {
  if (parts_->overview != nullptr && parts_->overview->editByKey(*event)) return;
  if (event->key() == Qt::Key_F5) {
    parts_->services.store.refreshAll();
  } else if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::ControlModifier || !pressWithControl(event->key())) {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace quillmeter
