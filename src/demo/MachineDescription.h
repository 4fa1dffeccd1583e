#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "access/model/AgentLogProvider.h"
#include "agents/model/AgentUsageAdapter.h"
#include "base/Date.h"
#include "platform/AudioHardware.h"
#include "platform/ForegroundApplication.h"
#include "platform/NetworkPathMonitor.h"
#include "platform/PreferenceDomain.h"
#include "platform/WifiClient.h"
#include "screentime/model/ActivitySpan.h"

namespace quillmeter {

// A series holds one value a second, the last of them at the machine's "now"; it repeats when time goes on.

struct DescribedMemory {
  std::int64_t totalBytes = 17'179'869'184;
  std::vector<double> used = {0.58};  // shares of the whole
  double wired = 0.14;
  double compressed = 0.06;
  double cached = 0.25;
  std::int64_t releasedByCleanup = 268'435'456;  // bytes
};

struct DescribedNetwork {
  std::string interface = "wlp3s0";  // empty: no default route
  std::string address = "192.168.1.23";
  std::vector<double> receivedPerSecond = {1'258'291};  // bytes
  std::vector<double> sentPerSecond = {183'500};
};

struct DescribedBattery {
  std::string name = "BAT0";
  int percent = 76;
  bool isCharging = false;
  bool isCharged = false;
  bool isOnMains = false;
  std::optional<int> minutesToEmpty = 312;
  std::optional<int> minutesToFull;
};

// What one agent left on the machine. Only an agent that is installed is found, and only a connected one is scanned.
struct DescribedAgent {
  bool isInstalled = false;
  bool isConnected = false;
  std::vector<AdapterUsageSession> sessions;
  int unreadableSources = 0;  // of agents other than Codex and Claude Code
};

// The limits that Codex told last.
struct DescribedLimits {
  Date observedAt;
  double primaryUsed = 0;  // 0 ... 1
  Date primaryResetAt;
  double weeklyUsed = 0;
  Date weeklyResetAt;
};

struct DescribedScreenTime {
  bool isEnabled = false;
  std::optional<Date> startedAt;
  std::vector<ActivitySpan> spans;
  std::optional<RunningApplication> foreground;
  std::map<std::string, std::string> icons;  // identifier of an application -> name in the icon theme
};

// What the web host answers to the check for updates.
struct DescribedUpdate {
  std::string runningVersion = "0.1.0";
  std::int64_t runningBuild = 1;
  int status = 200;  // 0: no answer at all
  std::string manifest;
};

// A whole machine with its user: everything that the services read. The defaults are an ordinary laptop without
// agents.
struct MachineDescription {
  Date now = Date::fromWholeSeconds(1'773'815'160);  // 2026-03-18 14:26 in Shanghai, a Wednesday
  std::string zone = "Asia/Shanghai";
  int warmUpSeconds = 4;  // pass before "now", so that there are rates and histories
  std::vector<std::pair<std::string, PreferenceValue>> settings;

  int processors = 8;
  std::vector<double> processorLoad = {0.23};  // 0 ... 1, of all processors
  DescribedMemory memory;
  std::int64_t diskTotalBytes = 512'110'190'592;
  std::int64_t diskAvailableBytes = 198'642'237'440;
  DescribedNetwork network;
  std::optional<DescribedBattery> battery = DescribedBattery{};
  int thermalLevel = 0;
  AudioFacts audio = defaultAudio();
  WifiFacts wifi = {.powered = true, .rssi = -52, .transmitRate = 866.7};
  NetworkPath path = {.satisfied = true, .usesWifi = true};

  std::map<AgentLogProvider, DescribedAgent> agents;
  std::optional<DescribedLimits> limits;
  DescribedScreenTime screenTime;
  DescribedUpdate update;

  // Built-in speakers, in use, and a headset.
  static AudioFacts defaultAudio();
};

}  // namespace quillmeter
