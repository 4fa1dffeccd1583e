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
struct LinuxDesktop::Connections {
  Connections(const LinuxDesktopPlaces& places, ApplicationEntryIndex& applicationEntries)
      : entries(applicationEntries), systemBus(places.systemBusAddress), sessionBus(places.sessionBusAddress) {}

  void addWayland(const MonotonicClock& clock);
  void addX11(TimerFactory& timers);
  void addServices(const LinuxDesktopPlaces& places, const MonotonicClock& clock);
  void connectEvents();

  ApplicationEntryIndex& entries;
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

struct LinuxDesktop::Parts {
  const LinuxDesktopPlaces places;
  DescriptorWatcher& descriptors;
  TimerFactory& timers;
  const MonotonicClock& clock;
  ApplicationEntryIndex entries{ApplicationEntryIndex::withSandboxExports(places.dataDirectories, places.dataHome),
                                entryLocales(places.locale)};
  DesktopApplicationIcons icons{entries};
  std::unique_ptr<Connections> connections{};
};

void LinuxDesktop::Connections::addWayland(const MonotonicClock& clock) {
  foreground.add(std::make_unique<WaylandForegroundApplication>(*wayland, entries));
  idle.add(std::make_unique<WaylandInputIdle>(*wayland, clock));
  waylandDisplays = std::make_unique<WaylandDisplayPower>(*wayland);
  displays = waylandDisplays.get();
}

void LinuxDesktop::Connections::addX11(TimerFactory& timers) {
  foreground.add(std::make_unique<X11ForegroundApplication>(*x11, entries));
  auto input = std::make_unique<X11InputIdle>(*x11, timers);
  displays = input.get();
  idle.add(std::move(input));
}

void LinuxDesktop::Connections::addServices(const LinuxDesktopPlaces& places, const MonotonicClock& clock) {
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

void LinuxDesktop::Connections::connectEvents() {
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
    : parts_(new Parts{places, descriptors, timers, clock}) {}

LinuxDesktop::~LinuxDesktop() = default;

LinuxDesktop::Connections& LinuxDesktop::connections() {
  if (parts_->connections) return *parts_->connections;
  const LinuxDesktopPlaces& places = parts_->places;
  auto opened = std::make_unique<Connections>(places, parts_->entries);
  if (!places.waylandSocket.empty())
    opened->wayland = WaylandConnection::open(places.waylandSocket, parts_->descriptors);
  if (!opened->wayland && !places.x11Display.empty())
    opened->x11 = XcbConnection::open(places.x11Display, parts_->descriptors, parts_->timers);
  if (opened->wayland) opened->addWayland(parts_->clock);
  if (opened->x11) opened->addX11(parts_->timers);
  opened->addServices(places, parts_->clock);
  opened->connectEvents();
  parts_->connections = std::move(opened);
  return *parts_->connections;
}

ForegroundApplicationSource& LinuxDesktop::foreground() {
  return connections().foreground;
}
InputIdleSource& LinuxDesktop::idle() {
  return connections().idle;
}
ScreenLockSources& LinuxDesktop::locks() {
  return *connections().locks;
}
SessionEvents& LinuxDesktop::events() {
  return *connections().events;
}
ApplicationIcons& LinuxDesktop::applicationIcons() {
  return parts_->icons;
}

}  // namespace quillmeter
