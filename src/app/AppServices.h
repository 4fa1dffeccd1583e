#pragma once

#include <memory>
#include <optional>

#include "access/AgentAuthorizationCoordinator.h"
#include "access/AgentLogAccessManager.h"
#include "agents/AgentUsageCollector.h"
#include "app/AppSettings.h"
#include "app/ZoneWatch.h"
#include "base/Clock.h"
#include "base/FileOpener.h"
#include "base/SerialQueue.h"
#include "core/MachineMetrics.h"
#include "core/MonitorStore.h"
#include "core/SharedSnapshotStore.h"
#include "platform/Platform.h"
#include "platform/linux/CryptoSha256.h"
#include "platform/linux/DesktopApplicationIndex.h"
#include "platform/linux/JsonPreferenceDomain.h"
#include "platform/linux/SystemFolderProbe.h"
#include "platform/linux/XdgLoginItems.h"
#include "platform/linux/audio/PulseAudioHardware.h"
#include "platform/linux/desktop/LinuxDesktop.h"
#include "platform/qt/QtHttpsClient.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "screentime/ActivityArchiveFile.h"
#include "screentime/ScreenTimeMonitor.h"
#include "ui/system/QtFolderPicker.h"
#include "update/AppUpdateChecker.h"

namespace quillmeter {

// What the services stand on. The order of the members is the order of their making; each outlives what is made after
// it.
struct AppGround {
  explicit AppGround(AppSettings& settings);

  AppSettings& settings;
  SystemMonotonicClock uptime;
  std::optional<JsonPreferenceDomain> suite;  // the widget's record; absent where there is no place for it
  Platform platform;
};

// The monitors and what they work with, for the life of the process.
struct AppServices {
  explicit AppServices(AppGround& ground);

  SystemFolderProbe probe;
  DesktopApplicationIndex applications;
  AgentLogAccessManager access;
  LocaleConventions conventions;
  ZoneWatch zone;
  SystemFileOpener opener;
  CryptoSha256 sha256;
  MachineMetrics metrics;
  SharedSnapshotStore sharedSnapshots;
  std::shared_ptr<AgentUsageCollector> collector;
  ThreadSerialQueue agentQueue;
  MonitorStore store;

  PulseAudioHardware audio;
  ThreadSerialQueue quickQueue;
  QuickStatusMonitor quickStatus;

  LinuxDesktop desktop;
  ActivityArchiveFile archive;
  ScreenTimeMonitor screenTime;

  QtHttpsClient https;
  AppUpdateChecker updates;
  QtFolderPicker picker;
  AgentAuthorizationCoordinator authorization;
  XdgLoginItems loginItems;
};

}  // namespace quillmeter
