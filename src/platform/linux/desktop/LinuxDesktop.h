#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "base/Clock.h"
#include "platform/ActivitySources.h"
#include "platform/ApplicationIcons.h"
#include "platform/DescriptorWatcher.h"
#include "platform/TimerFactory.h"

namespace quillmeter {

// Where the parts of the user's session are reached. What is empty is not there.
struct LinuxDesktopPlaces {
  std::string waylandSocket;      // WAYLAND_DISPLAY
  std::string x11Display;         // DISPLAY
  std::string sessionBusAddress;  // DBUS_SESSION_BUS_ADDRESS, else the socket "bus" in the runtime directory
  std::string systemBusAddress;   // DBUS_SYSTEM_BUS_ADDRESS, else the well-known socket
  std::string sessionId;          // XDG_SESSION_ID
  std::string locale;             // POSIX name of the messages' locale: LC_ALL, LC_MESSAGES, LANG
  std::filesystem::path dataHome;
  std::vector<std::filesystem::path> dataDirectories;  // dataHome among them
  std::filesystem::path scratchFolder;                 // for files that others read for a moment

  static LinuxDesktopPlaces current();
};

// What this user's session tells of itself: the application in front, the idle time, the lock, sleep and displays.
// Looks for a Wayland compositor, else for an X server, and for the services on both buses; of each kind the first that
// can tell wins, and none is a valid result. Connects to them when one of these is first asked for. Needs the Qt event
// loop of the main thread, which everything runs on.
class LinuxDesktop {
 public:
  LinuxDesktop(const LinuxDesktopPlaces& places, DescriptorWatcher& descriptors, TimerFactory& timers,
               const MonotonicClock& clock);
  LinuxDesktop(const LinuxDesktop&) = delete;
  LinuxDesktop& operator=(const LinuxDesktop&) = delete;
  ~LinuxDesktop();

  ForegroundApplicationSource& foreground();
  InputIdleSource& idle();
  ScreenLockSources& locks();
  SessionEvents& events();
  ActivitySources sources() { return {foreground(), idle(), locks(), events()}; }
  ApplicationIcons& applicationIcons();

 private:
  struct Parts;
  struct Connections;
  Connections& connections();

  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmeter
