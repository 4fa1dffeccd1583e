#include "app/AppWindows.h"

#include <utility>

#include <QApplication>
#include <QRect>
#include <QWidget>

#include "preferences/SettingText.h"
#include "ui/dashboard/DashboardWindow.h"
#include "ui/icon/ApplicationIcon.h"
#include "ui/onboarding/OnboardingWindow.h"
#include "ui/popover/PopoverWindow.h"
#include "ui/settings/SettingsWindow.h"
#include "ui/system/FailureBanner.h"
#include "ui/theme/QtText.h"

namespace quillmeter {
namespace {

// A click on the icon takes the focus from the popover, which closes, before the click itself arrives.
constexpr qint64 sameClickMilliseconds = 400;

}  // namespace

AppWindows::AppWindows(Handlers handlers, const std::filesystem::path& places)
    : handlers_(std::move(handlers)), places_(places) {}

AppWindows::~AppWindows() {
  for (QWidget* window : windows()) {
    window->disconnect();
    delete window;
  }
}

// Those that are open.
std::vector<QWidget*> AppWindows::windows() const {
  std::vector<QWidget*> all = {popover_, dashboard_, settings_, onboarding_};
  std::erase(all, nullptr);
  return all;
}

template <typename Window>
Window* AppWindows::open(QPointer<Window>& window) {
  if (window) return window;
  window = new Window(*services_);
  window->setAttribute(Qt::WA_DeleteOnClose);
  if (window->windowType() == Qt::Window) places_.follow(*window);  // the popover belongs to its icon
  // Queued: while a widget tells of its end, pointers to it still hold it.
  QObject::connect(
      window, &QObject::destroyed, qApp, [this] { closed(); }, Qt::QueuedConnection);
  return window;
}

void AppWindows::present(QWidget& window) {
  // One for all of them: what the toolkit derives of an icon it keeps for that very icon.
  if (icon_.isNull()) icon_ = ApplicationIcon::icon();
  if (!window.testAttribute(Qt::WA_SetWindowIcon)) window.setWindowIcon(icon_);
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

void AppWindows::closed() {
  if (windows().empty()) handlers_.allClosed();
}

void AppWindows::showDashboard(std::string_view page) {
  DashboardWindow* window = open(dashboard_);
  if (!page.empty()) window->showPage(page);
  present(*window);
  if (message_.empty()) return;
  FailureBanner::show(*window, FailureBanner::Kind::information, qtText(message_), services_->timers);
  message_.clear();
}

void AppWindows::showSettings(std::string_view page) {
  SettingsWindow* window = open(settings_);
  if (!page.empty()) window->showPage(page);
  present(*window);
}

void AppWindows::showOnboarding() {
  present(*open(onboarding_));
}

void AppWindows::quit() {
  handlers_.quit();
}

void AppWindows::preferenceFailed(const PreferenceProblem& problem) {
  const QString text = qtText(localizedDescription(problem));
  for (QWidget* window : windows()) {
    if (window->isVisible()) FailureBanner::show(*window, FailureBanner::Kind::error, text, services_->timers);
  }
}

void AppWindows::togglePopover(const QRect& icon) {
  if (popover_) {
    popover_->close();
    return;
  }
  if (popoverLeft_.isValid() && popoverLeft_.elapsed() < sameClickMilliseconds) return popoverLeft_.invalidate();
  PopoverWindow* window = open(popover_);
  window->setLeft([this] { popoverLeft_.start(); });
  window->showAt(icon);
}

void AppWindows::tellInDashboard(std::string message) {
  if (!dashboard_ || message.empty()) {
    message_ = std::move(message);
    return;
  }
  FailureBanner::show(*dashboard_, FailureBanner::Kind::information, qtText(message), services_->timers);
}

bool AppWindows::raiseOpen() {
  const std::vector<QWidget*> open = windows();
  for (QWidget* window : open) {
    if (window != popover_) present(*window);
  }
  return !open.empty();
}

void AppWindows::closeAll() {
  for (QWidget* window : windows()) window->close();
}

}  // namespace quillmeter
