#include "app/AppServices.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "agents/adapters/AgentUsageAdapters.h"
#include "app/ProgramPath.h"
#include "platform/linux/KernelVersion.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/qt/QtDescriptorWatcher.h"
#include "platform/qt/QtLocale.h"
#include "platform/qt/QtMainExecutor.h"
#include "platform/qt/QtTimerFactory.h"
#include "preferences/SettingsKeys.h"
#include "update/model/WebHost.h"

namespace quillmeter {
namespace {

// The widget's record is written at each tick: one that finds the lock taken is left out rather than waited for.
constexpr std::chrono::milliseconds suitePatience{5};

std::string_view searchPath() {
  const char* value = std::getenv("PATH");
  return value == nullptr ? std::string_view() : value;
}

}  // namespace

AppGround::AppGround(AppSettings& userSettings) : settings(userSettings) {
  const std::string suiteName(SettingsKeys::sharedSuiteName);
  if (const auto file = settings.paths.sharedPreferences(suiteName)) {
    suite.emplace(suiteName, *file, settings.clock,
                  JsonPreferenceOptions{.synchronize = false, .lockPatience = suitePatience});
  }
  platform.mainExecutor = std::make_unique<QtMainExecutor>();
  platform.timers = std::make_unique<QtTimerFactory>();
  platform.descriptors = std::make_unique<QtDescriptorWatcher>();
  addLinuxPlatform(platform, uptime);
  settings.preferences.tellOn(*platform.mainExecutor);
}

AppServices::AppServices(AppGround& ground)
    : applications(ground.settings.paths.dataDirectories),
      access(ground.settings.preferences, probe, AgentSearchPlaces::standard(ground.settings.paths.home, searchPath()),
             &applications),
      conventions(localeConventions(ground.settings.language())),
      zone(conventions.firstWeekday),
      metrics(ground.platform, ground.settings.clock, conventions),
      sharedSnapshots(ground.suite ? &*ground.suite : nullptr, ground.settings.clock),
      collector(std::make_shared<AgentUsageCollector>(opener, zone.calendar(),
                                                      makeAgentUsageAdapters(opener, sha256, ground.settings.clock))),
      agentQueue("com.kesto.Quillmeter.agent-usage", QueuePriority::utility),
      store({ground.settings.clock, ground.uptime, *ground.platform.timers, *ground.platform.mainExecutor, agentQueue,
             ground.settings.preferences, access, sharedSnapshots, *ground.platform.widgetReload, conventions},
            metrics.sources(), collector),
      audio(ground.uptime),
      quickQueue("com.kesto.Quillmeter.quick-status"),
      quickStatus({*ground.platform.timers, *ground.platform.mainExecutor, quickQueue, ground.settings.preferences,
                   *ground.platform.networkPaths, *ground.platform.wifi, audio}),
      desktop(LinuxDesktopPlaces::current(), *ground.platform.descriptors, *ground.platform.timers, ground.uptime),
      archive(ActivityArchiveFile::defaultPath(ground.settings.paths.dataHome)),
      screenTime({ground.settings.clock, ground.uptime, [this] { return zone.calendar(); }, *ground.platform.timers,
                  [this] { return desktop.sources(); }, archive}),
      updates(https, AppVersion::current(), std::string(productWebHost()), runningKernelVersion()),
      authorization(access, picker),
      loginItems(ground.settings.paths.configHome, {programPath(), "--hidden"}) {}

}  // namespace quillmeter
