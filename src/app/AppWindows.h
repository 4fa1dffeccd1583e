#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <QElapsedTimer>
#include <QIcon>
#include <QPointer>

#include "ui/AppActions.h"
#include "ui/UiServices.h"
#include "ui/system/WindowPlaces.h"

class QRect;
class QWidget;

namespace quillmeter {

class DashboardWindow;
class OnboardingWindow;
class PopoverWindow;
class SettingsWindow;

// The program's windows: each is made when it is opened and gone when it is closed. Main thread.
class AppWindows final : public AppActions {
 public:
  struct Handlers {
    std::function<void()> quit;
    std::function<void()> allClosed;  // the last window has just gone
  };

  // `places`: the file in which the windows keep where they were.
  AppWindows(Handlers handlers, const std::filesystem::path& places);
  ~AppWindows() override;
  // Before anything is shown; outlives the windows.
  void setServices(const UiServices& services) { services_ = &services; }

  void showDashboard(std::string_view page) override;
  void showSettings(std::string_view page) override;
  void showOnboarding() override;
  void quit() override;
  void preferenceFailed(const PreferenceProblem& problem) override;

  // Opens the popover at the tray's icon, or closes it.
  void togglePopover(const QRect& icon);
  // Says it in the dashboard, as soon as that is open; an empty message takes back one that was not said yet.
  void tellInDashboard(std::string message);
  // Brings the windows that are open to the front; false when there is none.
  bool raiseOpen();
  void closeAll();

 private:
  template <typename Window>
  Window* open(QPointer<Window>& window);
  void present(QWidget& window);
  void closed();
  std::vector<QWidget*> windows() const;

  const Handlers handlers_;
  WindowPlaces places_;
  const UiServices* services_ = nullptr;
  QPointer<DashboardWindow> dashboard_;
  QPointer<SettingsWindow> settings_;
  QPointer<OnboardingWindow> onboarding_;
  QPointer<PopoverWindow> popover_;
  QElapsedTimer popoverLeft_;  // since it closed because it lost the focus
  QIcon icon_;                 // painted with the first window
  std::string message_;
};

}  // namespace quillmeter
