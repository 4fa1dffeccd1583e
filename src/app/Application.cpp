#include "app/Application.h"

#include <unistd.h>

#include <cstdio>
#include <utility>
#include <vector>

#include <QApplication>
#include <QDBusConnection>
#include <QPixmapCache>
#include <QRect>

#include "app/AppServices.h"
#include "app/AppSettings.h"
#include "app/AppWindows.h"
#include "app/SettingsFollower.h"
#include "base/L10n.h"
#include "platform/linux/FontPages.h"
#include "platform/linux/SignalDescriptor.h"
#include "platform/linux/StartupPages.h"
#include "platform/linux/desktop/PortalAppearance.h"
#include "platform/qt/QtCatalogue.h"
#include "platform/qt/QtLocale.h"
#include "preferences/AppLanguage.h"
#include "preferences/DockVisibilityManager.h"
#include "preferences/SettingsKeys.h"
#include "ui/UiServices.h"
#include "ui/system/QtActivationPolicy.h"
#include "ui/theme/Theme.h"
#include "ui/tray/TrayItem.h"

namespace quillmeter {
namespace {

// A panel that starts with the session may come later than this program.
constexpr double trayPatienceSeconds = 10;
// Closed windows give their memory back when the last of it is free.
constexpr double tidyDelaySeconds = 2;

int failure(const std::string& sentence) {
  std::fprintf(stderr, "quillmeter: %s\n", sentence.c_str());
  return 1;
}

}  // namespace

// Everything the user sees, over the ground and, later, the monitors.
struct Application::Interface {
  Interface(Application& owner, QApplication& application)
      : appearance(QDBusConnection::sessionBus()),
        theme(application, owner.settings_.preferences, appearance),
        windows({.quit = [] { QCoreApplication::exit(0); }, .allClosed = [&owner] { owner.windowsClosed(); }},
                owner.settings_.paths.stateHome / "quillmeter" / "windows.ini") {}

  QtActivationPolicy activation;
  PortalAppearance appearance;
  Theme theme;
  std::optional<UiServices> services;
  AppWindows windows;
  std::optional<SettingsFollower> follower;
  std::unique_ptr<TrayItem> tray;
};

Application::Application(QApplication& application, SignalDescriptor& ending, AppSettings& settings, AppOptions options)
    : application_(application),
      ending_(ending),
      settings_(settings),
      options_(std::move(options)),
      instance_({.activate = [this] { showMain(); }, .act = [this](AppAction action) { act(action); }}) {}

Application::~Application() = default;

int Application::run() {
  if (const auto status = handOver()) return *status;
  ground_ = std::make_unique<AppGround>(settings_);
  interface_ = std::make_unique<Interface>(*this, application_);
  const auto endWatch = ground_->platform.descriptors->watch(ending_.descriptor(), DescriptorEvent::readable,
                                                             [] { QCoreApplication::exit(0); });
  prepareLaunch();
  begin();
  const int status = QCoreApplication::exec();
  end();
  return status;
}

// The exit status of a start that ends at once: a second one, which hands its wish to the first, or one that is to end
// what does not run.
std::optional<int> Application::handOver() {
  if (instance_.claim() == SingleInstance::Role::first) {
    return appActionNamed(options_.action) == AppAction::quit ? std::optional(0) : std::nullopt;
  }
  const bool wantsNothing = options_.hidden && options_.action.empty();
  if (wantsNothing || instance_.askFirst(options_.action)) return 0;
  return failure(QM_TR("Quillmeter 已在运行，但没有回应。"));
}

// Before the first window: who comes from an older version is spared the onboarding; the taskbar and the language are
// as the user left them.
void Application::prepareLaunch() {
  SettingsKeys::prepareOnboardingForLaunch(settings_.preferences, std::string(SettingsKeys::standardDomainName));
  applyDock();
  tellLanguage();
}

void Application::applyDock() {
  (void)interface_->activation.setListed(DockVisibilityManager::isDockIconVisible(settings_.preferences));
}

void Application::tellLanguage() {
  didSelectAppLanguage(rawValue(selectedAppLanguage(settings_.preferences)),
                       ground_->suite ? &*ground_->suite : nullptr,
                       [this] { ground_->platform.widgetReload->reloadAllTimelines(); });
}

void Application::begin() {
  services_ = std::make_unique<AppServices>(*ground_);
  AppServices& services = *services_;
  Interface& ui = *interface_;
  ui.services.emplace(UiServices{
      services.store, services.quickStatus, services.screenTime, services.updates, services.access,
      services.authorization, settings_.preferences, settings_.clock, *ground_->platform.timers, services.loginItems,
      ui.activation, services.desktop.applicationIcons(), ui.windows, [&services] { return services.zone.calendar(); },
      [this] { return localeConventions(settings_.language()); }, services.archive.path()});
  ui.windows.setServices(*ui.services);
  ui.follower.emplace(settings_.preferences, *ground_->platform.mainExecutor,
                      SettingsFollower::Actions{
                          .languageChanged = [this] { applyLanguage(); },
                          .periodChanged =
                              [&services] {
                                services.store.stop();
                                services.store.start();
                              },
                          .quickStatusNeeds = [&services] { services.quickStatus.configure(); },
                          .agentsChanged = [&services] { services.store.refreshAgents(); },
                          .dockChanged = [this] { applyDock(); },
                      });
  subscriptions_.push_back(services.store.onSystemChange([this] { systemChanged(); }));
  subscriptions_.push_back(services.store.onAgentsChange([this] { agentsChanged(); }));
  ui.tray = std::make_unique<TrayItem>(
      *ui.services, ui.theme,
      TrayItem::Handlers{.togglePopover = [&ui](const QRect& icon) { ui.windows.togglePopover(icon); },
                         .refresh = [&services] { services.store.refreshAll(); },
                         .availabilityChanged = [this](bool available) { trayChanged(available); }});
  ui.tray->show();
  startMonitors();
  showFirstWindow();
}

// In this order, once the item in the panel is there or it is known that there is none.
void Application::startMonitors() {
  services_->store.start();
  services_->quickStatus.configure();
  services_->screenTime.start();
}

void Application::showFirstWindow() {
  if (const auto action = appActionNamed(options_.action)) {
    act(*action);
  } else if (!options_.hidden) {
    showMain();
  }
  if (interface_->tray->isAvailable()) return;
  trayPatience_ = ground_->platform.timers->once(options_.hidden ? trayPatienceSeconds : 0, [this] { missTray(); });
}

// The dashboard; for new users the onboarding, until they have closed it.
void Application::showMain() {
  const bool isNew =
      settings_.preferences.value(SettingsKeys::onboardingVersion) < SettingsKeys::currentOnboardingVersion;
  isNew ? interface_->windows.showOnboarding() : interface_->windows.showDashboard({});
}

// Said once: without a tray the program would run unseen.
void Application::missTray() {
  if (interface_->tray->isAvailable()) return;
  interface_->windows.tellInDashboard(
      QM_TR("此桌面没有系统托盘，因此没有图标可显示；Quillmeter "
            "在窗口中运行，关闭所有窗口后会退出，记录屏幕使用时间时除外。托盘出现后图标会自动显示。"));
  if (!interface_->windows.raiseOpen()) showMain();
}

void Application::trayChanged(bool available) {
  if (!available) return;
  trayPatience_.reset();
  interface_->windows.tellInDashboard({});  // that there is none
}

void Application::act(AppAction action) {
  AppWindows& windows = interface_->windows;
  switch (action) {
    case AppAction::openDashboard:
      windows.showDashboard({});
      break;
    case AppAction::openSettings:
      windows.showSettings({});
      break;
    case AppAction::togglePopover:
      windows.togglePopover({});
      break;
    case AppAction::refresh:
      services_->store.refreshAll();
      break;
    case AppAction::quit:
      QCoreApplication::exit(0);
      break;
  }
}

// At each sample: what others changed in the settings, another day, another time zone.
void Application::systemChanged() {
  settings_.preferences.refresh();
  MonitorStore& store = services_->store;
  const bool isElsewhere = services_->zone.hasChanged();
  if (isElsewhere) {
    services_->agentQueue.post([collector = services_->collector, calendar = services_->zone.calendar()] {
      collector->setCalendar(calendar);
    });
  }
  if (isElsewhere || store.agents().isOfAnotherDay(services_->zone.calendar(), settings_.clock.now())) {
    if (!store.isRefreshingAgents() && !store.isCleaningMemory()) store.refreshAgents();
  }
}

// The start is over when the first scan is: what it alone needed goes back to the system.
void Application::agentsChanged() {
  if (hasReleasedStart_ || services_->store.agents().lastUpdated == Date::distantPast()) return;
  hasReleasedStart_ = true;
  tidySoon();
}

void Application::applyLanguage() {
  installCatalogue(settings_.language());
  tellLanguage();
  services_->store.refreshAll();  // its texts are made anew
  QEvent change(QEvent::LanguageChange);
  QCoreApplication::sendEvent(&application_, &change);
  interface_->tray->retranslate();
}

// Without an item in the panel a program without windows could not be reached; it stays only to go on recording.
void Application::windowsClosed() {
  const bool records = services_->screenTime.enabled() && !services_->screenTime.storageError();
  if (!interface_->tray->isAvailable() && !records) QCoreApplication::exit(0);
  tidySoon();
}

void Application::tidySoon() {
  tidying_ = ground_->platform.timers->once(tidyDelaySeconds, [this] {
    QPixmapCache::clear();
    releaseFontPages();
    services_->agentQueue.post([&allocator = *ground_->platform.allocatorRelief] {
      allocator.releaseUnusedMemory();
      releaseStartupPages();
    });
  });
}

void Application::end() {
  subscriptions_.clear();
  interface_->follower.reset();
  services_->screenTime.willTerminate();
  services_->store.stop();
  interface_->windows.closeAll();
  interface_->tray.reset();
  // A scan of any length would hold the end up; nothing of ours is lost with it, since it only reads.
  if (services_->store.isRefreshingAgents() || services_->store.isCleaningMemory()) ::_exit(0);
}

}  // namespace quillmeter
