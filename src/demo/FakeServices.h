#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "access/AgentAuthorizationCoordinator.h"
#include "access/AgentLogAccessManager.h"
#include "agents/AgentUsageCollector.h"
#include "base/FileOpener.h"
#include "core/MonitorStore.h"
#include "core/SharedSnapshotStore.h"
#include "demo/FakeHome.h"
#include "demo/MachineDescription.h"
#include "demo/MemoryArchiveStore.h"
#include "demo/RecordingActions.h"
#include "demo/ScriptedMachine.h"
#include "platform/fake/FakeAudioHardware.h"
#include "platform/fake/FakeConnections.h"
#include "platform/fake/FakeDesktop.h"
#include "platform/fake/FakeMachine.h"
#include "platform/fake/FakeScreenTime.h"
#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ManualQueue.h"
#include "platform/fake/ManualTimerFactory.h"
#include "preferences/PreferenceStore.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "screentime/ActivityArchiveFile.h"
#include "screentime/ScreenTimeMonitor.h"
#include "ui/UiServices.h"
#include "update/AppUpdateChecker.h"

namespace quillmeter {

// All services that the views see, the real ones, over a described machine whose time passes only by advance(). As in
// the program, a changed setting takes effect by itself. Main thread, with a QApplication for useLanguage() alone.
//
//   FakeServices services;                        // or FakeServices services(description);
//   services.start();                             // runs up to the described moment, with a scan of the agents
//   MyCard card(services.ui); card.show();
//   services.description.processorLoad = {0.97};  // what the machine does from now on
//   services.advance(2);                          // one tick of the store
class FakeServices {
  struct Metrics;

 public:
  explicit FakeServices(MachineDescription machine = {});
  ~FakeServices();
  FakeServices(const FakeServices&) = delete;
  FakeServices& operator=(const FakeServices&) = delete;

  // Starts the store, the quick status and the screen-time record, and runs up to description.now.
  void start();
  // Lets time pass, and everything happen that is due meanwhile.
  void advance(double seconds);
  // Runs what waits for the queues and the main thread.
  void settle();

  // Writes the agents and limits of the description to the home and scans them.
  void scanAgents();
  // Adds one use at `date` to a session, connecting the agent where it is not yet; scanAgents() shows it.
  void addUsage(AgentLogProvider provider, const std::string& session, const AgentTokenMetrics& metrics, Date date);
  // Of the clock's day, in its zone.
  Date today(int hour, int minute) const;

  // "zh-Hans" or "en": sets the language and tells all widgets, as the program does it.
  void useLanguage(std::string_view language);
  // A setting changed by the user; by another program.
  void set(std::string_view key, PreferenceValue value);
  void setByAnotherProgram(const std::string& key, std::optional<PreferenceValue> value);

  MachineDescription description;  // may be changed at any time
  FakeHome home;
  ManualClock clock;
  ManualMonotonicClock uptime;
  ManualTimerFactory timers{&clock, &uptime};
  ManualExecutor mainThread;
  ManualQueue agentQueue;
  ManualQueue quickQueue;

  FakeMachine machine;
  FakeAudioHardware audio;
  FakeWifiClient wifi;
  FakeNetworkPaths paths{mainThread};
  FakeHttpsClient https{mainThread};
  FakeLoginItems loginItems;
  FakeActivationPolicy activation;
  FakeFolderPicker picker;
  FakeApplicationIcons icons;
  FakeFolderProbe probe;
  FakeForegroundApplication foreground;
  FakeInputIdle idle;
  FakeScreenLock lock;
  FakeSessionEvents sessionEvents;
  MemoryArchiveStore archive;
  RecordingActions actions;
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences{domain};

 private:
  SystemFileOpener opener_;
  SharedSnapshotStore shared_{nullptr, clock};
  std::string language_;
  ScriptedMachine script_;
  const std::filesystem::path screenTimeRecord_ = ActivityArchiveFile::defaultPath(home.path() / ".local/share");
  const std::unique_ptr<Metrics> metrics_;

 public:
  AgentLogAccessManager access;
  AgentAuthorizationCoordinator authorization{access, picker};
  MonitorStore store;
  QuickStatusMonitor quickStatus;
  ScreenTimeMonitor screenTime;
  AppUpdateChecker updates;
  UiServices ui;

 private:
  void connectAgents();
  void settingsChanged(const std::vector<std::string>& keys);
  void applyLanguage();
  Calendar calendar() const;
  LocaleConventions conventions() const;

  bool isStarted_ = false;
  Subscription settingChanges_;
};

}  // namespace quillmeter
