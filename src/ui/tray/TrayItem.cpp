#include "ui/tray/TrayItem.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QDBusConnection>
#include <QImage>
#include <QRect>

#include "base/Clock.h"
#include "core/MonitorStore.h"
#include "platform/TimerFactory.h"
#include "preferences/PreferenceStore.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "ui/AppActions.h"
#include "ui/theme/Theme.h"
#include "ui/tray/EmbeddedTrayIcon.h"
#include "ui/tray/NotifierWatch.h"
#include "ui/tray/PanelAppearance.h"
#include "ui/tray/StatusNotifierItem.h"
#include "ui/tray/TrayContent.h"
#include "ui/tray/TrayPicture.h"
#include "ui/tray/TrayTooltip.h"
#include "ui/tray/X11TraySelection.h"

namespace quillmeter {

namespace {

constexpr std::string_view settingsPrefix = "settings.menuBar";  // of all that the icon depends on

}  // namespace

struct TrayItem::Parts final : TrayContent {
  enum class Place { nowhere, messageBus, x11 };

  Parts(const UiServices& usedServices, Theme& usedTheme, Handlers usedHandlers)
      : services(usedServices),
        theme(usedTheme),
        handlers(std::move(usedHandlers)),
        picture(usedServices.preferences),
        notifiers(QDBusConnection::sessionBus(), [this] { trayChanged(); }) {}

  QImage iconImage(int pixels) override { return picture.paint(pixels); }
  std::string tooltipText() override { return trayTooltipText(services.store.system(), services.store.agents()); }
  std::vector<TrayMenuEntry> menu() override { return trayMenu(services.store.agents()); }
  void activated(const QRect& icon) override { handlers.togglePopover(icon); }
  void secondaryActivated() override { handlers.refresh(); }
  void chosen(TrayCommand command) override;

  void subscribe();
  void updateIcon();
  void figuresChanged();
  void trayChanged();
  void moveTo(Place next);
  void settleAvailability();
  void tellAvailability(bool isThere);

  const UiServices& services;
  Theme& theme;
  const Handlers handlers;
  const std::string desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString();
  TrayPicture picture;
  NotifierWatch notifiers;
  std::unique_ptr<X11TraySelection> selection;
  Place place = Place::nowhere;
  std::unique_ptr<TrayBackend> backend;
  QString watcher;  // that knows the item
  bool available = false;
  std::unique_ptr<Timer> patience;
  std::vector<Subscription> subscriptions;
};

void TrayItem::Parts::chosen(TrayCommand command) {
  switch (command) {
    case TrayCommand::dashboard:
      return services.actions.showDashboard();
    case TrayCommand::settings:
      return services.actions.showSettings();
    case TrayCommand::refresh:
      return handlers.refresh();
    case TrayCommand::quit:
      return services.actions.quit();
    case TrayCommand::none:
      return;
  }
}

void TrayItem::Parts::subscribe() {
  subscriptions.push_back(services.store.onSystemChange([this] { figuresChanged(); }));
  subscriptions.push_back(services.store.onAgentsChange([this] { figuresChanged(); }));
  subscriptions.push_back(services.quickStatus.onChange([this] { updateIcon(); }));
  subscriptions.push_back(theme.onChange([this] { updateIcon(); }));
  subscriptions.push_back(
      services.preferences.onChange([this](const std::vector<std::string>& keys, PreferenceChangeOrigin) {
        const bool concerns = std::any_of(keys.begin(), keys.end(),
                                          [](const std::string& key) { return key.starts_with(settingsPrefix); });
        if (concerns) updateIcon();
      }));
}

void TrayItem::Parts::updateIcon() {
  const auto foreground = selection ? selection->foreground() : std::nullopt;
  const bool dark = isPanelDark(foreground, desktop, theme.isDesktopDark());
  const bool looksDifferent =
      picture.update(services.store.system(), services.store.agents(), services.quickStatus.snapshot(), dark);
  if (looksDifferent && backend) backend->iconChanged();
}

void TrayItem::Parts::figuresChanged() {
  updateIcon();
  if (backend) backend->tooltipChanged(services.clock.now().secondsSince(Date()));
}

void TrayItem::Parts::trayChanged() {
  Place next = Place::nowhere;
  if (selection && selection->hasTray()) next = Place::x11;
  if (notifiers.hasHost()) next = Place::messageBus;
  moveTo(next);
  updateIcon();  // another tray may have another ground
  settleAvailability();
}

// Without a tray the item stays as it is: a panel that restarts finds it again.
void TrayItem::Parts::moveTo(Place next) {
  if (next == Place::nowhere) return;
  if (next != place) {
    backend.reset();
    place = next;
    if (next == Place::messageBus) {
      watcher.clear();
      backend = std::make_unique<StatusNotifierItem>(QDBusConnection::sessionBus(), *this);
    } else {
      backend = std::make_unique<EmbeddedTrayIcon>(*this);
      selection->listen();
    }
  }
  if (next == Place::messageBus && notifiers.owner() != watcher) {
    watcher = notifiers.owner();
    static_cast<StatusNotifierItem&>(*backend).registerItem();
  }
}

void TrayItem::Parts::settleAvailability() {
  const bool isThere = notifiers.hasHost() || (selection && selection->hasTray());
  if (isThere) {
    patience.reset();
    tellAvailability(true);
  } else if (available && !patience) {
    patience = services.timers.once(vanishedSeconds, [this] { tellAvailability(false); });
  }
}

void TrayItem::Parts::tellAvailability(bool isThere) {
  if (isThere == available) return;
  available = isThere;
  handlers.availabilityChanged(isThere);
}

TrayItem::TrayItem(const UiServices& services, Theme& theme, Handlers handlers)
    : parts_(std::make_unique<Parts>(services, theme, std::move(handlers))) {}

TrayItem::~TrayItem() = default;

void TrayItem::show() {
  Parts& parts = *parts_;
  if (!parts.subscriptions.empty()) return;
  parts.selection = X11TraySelection::ofApplication([&parts] { parts.trayChanged(); });
  parts.notifiers.checkNow();
  parts.subscribe();
  parts.trayChanged();
}

bool TrayItem::isAvailable() const {
  return parts_->available;
}

void TrayItem::retranslate() {
  parts_->updateIcon();
  if (parts_->backend) parts_->backend->textsChanged();
}

int TrayItem::paintCount() const {
  return parts_->picture.paintCount();
}

}  // namespace quillmeter
