#pragma once

#include <filesystem>
#include <functional>

#include "base/Calendar.h"
#include "base/LocaleConventions.h"

namespace quillmeter {

class ActivationPolicy;
class AgentAuthorizationCoordinator;
class AgentLogAccessManager;
class AppActions;
class AppUpdateChecker;
class ApplicationIcons;
class Clock;
class LoginItems;
class MonitorStore;
class PreferenceStore;
class QuickStatusMonitor;
class ScreenTimeMonitor;
class TimerFactory;

// What the views show and act on. Made once by the application; all of it outlives every window. Views read the
// services and subscribe to their changes while they are visible; a choice of the user is written to `preferences`
// alone, and the application acts on the change (language, theme, refresh period, quick status, agents' scan), so that
// a setting changed by another program takes effect the same way.
struct UiServices {
  MonitorStore& store;
  QuickStatusMonitor& quickStatus;
  ScreenTimeMonitor& screenTime;
  AppUpdateChecker& updates;
  AgentLogAccessManager& access;
  AgentAuthorizationCoordinator& authorization;
  PreferenceStore& preferences;
  const Clock& clock;
  TimerFactory& timers;
  LoginItems& loginItems;
  ActivationPolicy& activation;
  ApplicationIcons& applicationIcons;
  AppActions& actions;
  std::function<Calendar()> currentCalendar;       // asked anew each time: the user travels
  std::function<LocaleConventions()> conventions;  // of the interface language
  const std::filesystem::path& screenTimeRecord;   // the file that `screenTime` keeps
};

}  // namespace quillmeter
