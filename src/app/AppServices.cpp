#include "app/AppServices.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "agents/adapters/AgentUsageAdapters.h"
#include "app/ProgramPath.h"
#include "app/StoredLanguage.h"
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
// A setting that another program is just writing comes a moment later.
constexpr std::chrono::milliseconds settingsPatience{250};

const std::string standardDomain(SettingsKeys::standardDomainName);

std::string_view searchPath() {
  const char* value = std::getenv("PATH");
  return value == nullptr ? std::string_view() : value;
}

}  // namespace

AppGround::AppGround()
    : paths(XdgPaths::current()),
      domain(standardDomain, paths.standardPreferences(standardDomain), clock, {.lockPatience = settingsPatience}),
      preferences(domain) {
  domain.setFreshness(PreferenceFreshness::whenRefreshed);
  const std::string suiteName(SettingsKeys::sharedSuiteName);
  if (const auto file = paths.sharedPreferences(suiteName)) {
    suite.emplace(suiteName, *file, clock, JsonPreferenceOptions{.synchronize = false, .lockPatience = suitePatience});
  }
  platform.mainExecutor = std::make_unique<QtMainExecutor>();
  platform.timers = std::make_unique<QtTimerFactory>();
  platform.descriptors = std::make_unique<QtDescriptorWatcher>();
  addLinuxPlatform(platform, uptime);
  preferences.tellOn(*platform.mainExecutor);
}

AppServices::AppServices(AppGround& ground)
    : applications(ground.paths.dataDirectories),
      access(ground.preferences, probe, AgentSearchPlaces::standard(ground.paths.home, searchPath()), &applications),
      conventions(localeConventions(interfaceLanguage(ground.preferences))),
      zone(conventions.firstWeekday),
      metrics(ground.platform, ground.clock, conventions),
      sharedSnapshots(ground.suite ? &*ground.suite : nullptr, ground.clock),
      collector(std::make_shared<AgentUsageCollector>(opener, zone.calendar(),
                                                      makeAgentUsageAdapters(opener, sha256, ground.clock))),
      agentQueue("com.kesto.Quillmeter.agent-usage", QueuePriority::utility),
      store({ground.clock, ground.uptime, *ground.platform.timers, *ground.platform.mainExecutor, agentQueue,
             ground.preferences, access, sharedSnapshots, *ground.platform.widgetReload, conventions},
            metrics.sources(), collector),
      audio(ground.uptime),
      quickQueue("com.kesto.Quillmeter.quick-status"),
      quickStatus({*ground.platform.timers, *ground.platform.mainExecutor, quickQueue, ground.preferences,
                   *ground.platform.networkPaths, *ground.platform.wifi, audio}),
      desktop(LinuxDesktopPlaces::current(), *ground.platform.descriptors, *ground.platform.timers, ground.uptime),
      archive(ActivityArchiveFile::defaultPath(ground.paths.dataHome)),
      screenTime({ground.clock, ground.uptime, [this] { return zone.calendar(); }, *ground.platform.timers,
                  desktop.foreground(), desktop.idle(), desktop.locks(), desktop.events(), archive}),
      updates(https, AppVersion::current(), std::string(productWebHost()), runningKernelVersion()),
      authorization(access, picker),
      loginItems(ground.paths.configHome, {programPath(), "--hidden"}) {}

}  // namespace quillmeter
