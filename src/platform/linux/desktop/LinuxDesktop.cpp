#include "platform/linux/desktop/LinuxDesktop.h"

#include <atomic>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <QDBusConnection>
#include <QString>

#include "platform/linux/XdgPaths.h"
#include "platform/linux/desktop/ApplicationEntryIndex.h"
#include "platform/linux/desktop/DesktopApplicationIcons.h"
#include "platform/linux/desktop/DesktopSources.h"
#include "platform/linux/desktop/KWinForegroundApplication.h"
#include "platform/linux/desktop/LogindSession.h"
#include "platform/linux/desktop/MutterInputIdle.h"
#include "platform/linux/desktop/ScreenSaverLock.h"
#include "platform/linux/desktop/WaylandConnection.h"
#include "platform/linux/desktop/WaylandDisplayPower.h"
#include "platform/linux/desktop/WaylandForegroundApplication.h"
#include "platform/linux/desktop/WaylandInputIdle.h"
#include "platform/linux/desktop/X11ForegroundApplication.h"
#include "platform/linux/desktop/X11InputIdle.h"
#include "platform/linux/desktop/XcbConnection.h"

namespace quillmeter {
namespace {

std::string environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// Connected by its address and by a name of our own. Asking Qt for "the session bus" could start a bus where there is
// none.
class BusConnection {
 public:
  explicit BusConnection(const std::string& address)
      : name_(QStringLiteral("quillmeter-desktop-%1").arg(++count)),
        bus_(address.empty() ? QDBusConnection(name_)
                             : QDBusConnection::connectToBus(QString::fromStdString(address), name_)) {}
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;
  ~BusConnection() { QDBusConnection::disconnectFromBus(name_); }
  bool isConnected() const { return bus_.isConnected(); }
  const QDBusConnection& get() const { return bus_; }

 private:
  static inline std::atomic<int> count = 0;
  QString name_;
  QDBusConnection bus_;
};

}  // namespace

LinuxDesktopPlaces LinuxDesktopPlaces::current() {
  const XdgPaths paths = XdgPaths::current();
  LinuxDesktopPlaces places;
  places.waylandSocket = environmentVariable("WAYLAND_DISPLAY");
  places.x11Display = environmentVariable("DISPLAY");
  places.sessionBusAddress = environmentVariable("DBUS_SESSION_BUS_ADDRESS");
  std::error_code ignored;
  if (places.sessionBusAddress.empty() && paths.runtimeDirectory &&
      std::filesystem::exists(*paths.runtimeDirectory / "bus", ignored)) {
    places.sessionBusAddress = "unix:path=" + (*paths.runtimeDirectory / "bus").string();
  }
  places.systemBusAddress = environmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
  for (const char* socket : {"/run/dbus/system_bus_socket", "/var/run/dbus/system_bus_socket"}) {
    if (places.systemBusAddress.empty() && std::filesystem::exists(socket, ignored))
      places.systemBusAddress = std::string("unix:path=") + socket;
  }
  places.sessionId = environmentVariable("XDG_SESSION_ID");
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (places.locale.empty()) places.locale = environmentVariable(name);
  }
  places.dataHome = paths.dataHome;
  places.dataDirectories = paths.dataDirectories;
  places.scratchFolder = paths.runtimeDirectory.value_or(paths.stateHome) / "quillmeter";
  return places;
}

// In the order of dependence: what others use comes first and ends last.
struct LinuxDesktop::Parts {
  explicit Parts(const LinuxDesktopPlaces& places)
      : entries(ApplicationEntryIndex::withSandboxExports(places.dataDirectories, places.dataHome),
                entryLocales(places.locale)),
        systemBus(places.systemBusAddress),
        sessionBus(places.sessionBusAddress) {}

  void addWayland(const MonotonicClock& clock);
  void addX11(TimerFactory& timers);
  void addServices(const LinuxDesktopPlaces& places, const MonotonicClock& clock);
  void connectEvents();

  ApplicationEntryIndex entries;
  DesktopApplicationIcons icons{entries};
  BusConnection systemBus;
  BusConnection sessionBus;
  std::unique_ptr<WaylandConnection> wayland;
  std::unique_ptr<XcbConnection> x11;
  std::unique_ptr<LogindSession> logind;
  std::unique_ptr<WaylandDisplayPower> waylandDisplays;
  DisplayPower* displays = nullptr;  // one of the others' parts
  FirstForegroundApplication foreground;
  FirstInputIdle idle;
  std::unique_ptr<DesktopScreenLock> locks;
  std::unique_ptr<DesktopSessionEvents> events;
};

void LinuxDesktop::Parts::addWayland(const MonotonicClock& clock) {
  foreground.add(std::make_unique<WaylandForegroundApplication>(*wayland, entries));
  idle.add(std::make_unique<WaylandInputIdle>(*wayland, clock));
  waylandDisplays = std::make_unique<WaylandDisplayPower>(*wayland);
  displays = waylandDisplays.get();
}

void LinuxDesktop::Parts::addX11(TimerFactory& timers) {
  foreground.add(std::make_unique<X11ForegroundApplication>(*x11, entries));
  auto input = std::make_unique<X11InputIdle>(*x11, timers);
  displays = input.get();
  idle.add(std::move(input));
}

void LinuxDesktop::Parts::addServices(const LinuxDesktopPlaces& places, const MonotonicClock& clock) {
  if (systemBus.isConnected()) logind = std::make_unique<LogindSession>(systemBus.get(), places.sessionId);
  locks = std::make_unique<DesktopScreenLock>(logind.get());
  if (sessionBus.isConnected()) {
    // The X server of a Wayland session knows its own windows only; KWin as an X11 manager keeps the active window
    // there.
    if (wayland)
      foreground.add(std::make_unique<KWinForegroundApplication>(sessionBus.get(), entries, places.scratchFolder));
    idle.add(std::make_unique<MutterInputIdle>(sessionBus.get(), clock));
    locks->add(ScreenSaverLock::freedesktop(sessionBus.get()));
    locks->add(ScreenSaverLock::gnome(sessionBus.get()));
  }
  events = std::make_unique<DesktopSessionEvents>(logind.get(), displays);
}

void LinuxDesktop::Parts::connectEvents() {
  if (displays != nullptr) {
    displays->setHandler([this](bool asleep) {
      events->announce(asleep ? SessionEvent::displaysDidSleep : SessionEvent::displaysDidWake);
    });
  }
  if (!logind) return;
  logind->setHandlers({
      .lockAnnounced = [this](bool locked) { locks->announce(locked); },
      .sleepChanged =
          [this](bool asleep) { events->announce(asleep ? SessionEvent::willSleep : SessionEvent::didWake); },
      .activeChanged =
          [this](bool active) {
            events->announce(active ? SessionEvent::sessionDidBecomeActive : SessionEvent::sessionDidResignActive);
          },
  });
}

LinuxDesktop::LinuxDesktop(const LinuxDesktopPlaces& places, DescriptorWatcher& descriptors, TimerFactory& timers,
                           const MonotonicClock& clock)
    : parts_(std::make_unique<Parts>(places)) {
  if (!places.waylandSocket.empty()) parts_->wayland = WaylandConnection::open(places.waylandSocket, descriptors);
  if (!parts_->wayland && !places.x11Display.empty())
    parts_->x11 = XcbConnection::open(places.x11Display, descriptors, timers);
  if (parts_->wayland) parts_->addWayland(clock);
  if (parts_->x11) parts_->addX11(timers);
  parts_->addServices(places, clock);
  parts_->connectEvents();
}

LinuxDesktop::~LinuxDesktop() = default;

ForegroundApplicationSource& LinuxDesktop::foreground() {
  return parts_->foreground;
}
InputIdleSource& LinuxDesktop::idle() {
  return parts_->idle;
}
ScreenLockSources& LinuxDesktop::locks() {
  return *parts_->locks;
}
SessionEvents& LinuxDesktop::events() {
  return *parts_->events;
}
ApplicationIcons& LinuxDesktop::applicationIcons() {
  return parts_->icons;
}

}  // namespace quillmeter
