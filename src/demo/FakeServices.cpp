#include "demo/FakeServices.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "base/CheckedInt.h"
#include "metrics/BatteryInfo.h"
#include "metrics/CpuInfo.h"
#include "metrics/DiskInfo.h"
#include "metrics/FanInfo.h"
#include "metrics/MemoryInfo.h"
#include "metrics/NetworkInfo.h"
#include "platform/qt/QtCatalogue.h"
#include "platform/qt/QtLocale.h"
#include "preferences/AppLanguage.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

constexpr double stepSeconds = 1;
constexpr Weekday monday = 1;
constexpr std::string_view webHost = "quillmeter.example";
constexpr std::string_view systemVersion = "6.1.0";

// Numbers as most people of both languages write them, whatever the locale of the machine that runs this.
LocaleConventions conventionsOf(std::string_view language) {
  LocaleConventions conventions = localeConventions(language);
  conventions.decimalSeparator = ".";
  conventions.groupingSeparator = ",";
  conventions.firstWeekday = monday;
  return conventions;
}

std::string languageIn(const MachineDescription& machine) {
  for (const auto& [key, value] : machine.settings) {
    if (key != SettingsKeys::appLanguage.key) continue;
    if (const auto* language = std::get_if<std::string>(&value); language != nullptr && *language == englishLanguage) {
      return *language;
    }
  }
  return std::string(simplifiedChineseLanguage);
}

PreferenceDomain& withSettings(PreferenceDomain& domain, const MachineDescription& machine) {
  PreferenceChanges changes(machine.settings.begin(), machine.settings.end());
  if (!changes.empty() && !domain.apply(changes)) fatalError("settings in memory cannot be written");
  return domain;
}

MemoryArchiveStore& withRecord(MemoryArchiveStore& archive, const DescribedScreenTime& record) {
  archive.stored = ActivityArchive{1, record.startedAt, record.isEnabled, record.spans};
  return archive;
}

}  // namespace

struct FakeServices::Metrics {
  Metrics(FakeMachine& machine, const Clock& clock, const LocaleConventions& locale)
      : cpu(machine.processorTicks, locale),
        memory(machine.memoryPages, machine.allocatorRelief),
        disk(machine.volumeCapacity, locale),
        network(machine.networkInterfaces, clock, locale),
        battery(machine.powerSources),
        thermal(machine.thermalState) {}
  MetricSources sources() { return {cpu, memory, disk, network, battery, fan, thermal}; }

  CpuInfo cpu;
  MemoryInfo memory;
  DiskInfo disk;
  NetworkInfo network;
  BatteryInfo battery;
  FanInfo fan;
  ThermalState& thermal;
};

FakeServices::FakeServices(MachineDescription described)
    : description(std::move(described)),
      clock(Date::fromSeconds(description.now.seconds() - description.warmUpSeconds)),
      preferences(withSettings(domain, description)),
      language_(languageIn(description)),
      script_(machine, description),
      metrics_(std::make_unique<Metrics>(machine, clock, conventions())),
      access(preferences, probe, AgentSearchPlaces{home.path(), {}, {}}),
      store({clock, uptime, timers, mainThread, agentQueue, preferences, access, shared_, machine.widgetReload,
             conventions()},
            metrics_->sources(), std::make_shared<AgentUsageCollector>(opener_, calendar(), home.makeAdapters())),
      quickStatus({timers, mainThread, quickQueue, preferences, paths, wifi, audio}),
      screenTime({clock, uptime, [this] { return calendar(); }, timers,
                  [this] {
                    return ActivitySources{foreground, idle, lock, sessionEvents};
                  },
                  withRecord(archive, description.screenTime)}),
      updates(https, AppVersion{description.update.runningVersion, description.update.runningBuild},
              std::string(webHost), std::string(systemVersion)),
      ui{store,
         quickStatus,
         screenTime,
         updates,
         access,
         authorization,
         preferences,
         clock,
         timers,
         loginItems,
         activation,
         icons,
         actions,
         [this] { return calendar(); },
         [this] { return conventions(); },
         screenTimeRecord_} {
  audio.facts = description.audio;
  wifi.facts = description.wifi;
  paths.change(description.path);
  foreground.application = description.screenTime.foreground;
  for (const auto& [identifier, name] : description.screenTime.icons) icons.names.emplace(identifier, name);
  if (description.update.status > 0)
    https.response = HttpsResponse{description.update.status, description.update.manifest};
  if (description.update.status == 0) https.response = tl::unexpected(HttpsFailure::transport);
  home.write(description.agents, description.limits);
  connectAgents();
  installCatalogue(language_);
  settingChanges_ = preferences.onChange([this](const std::vector<std::string>& keys, PreferenceChangeOrigin) {
    mainThread.post([this, keys] { settingsChanged(keys); });
  });
}

FakeServices::~FakeServices() {
  installCatalogue(simplifiedChineseLanguage);
}

void FakeServices::start() {
  isStarted_ = true;
  store.start();
  quickStatus.configure();
  screenTime.start();
  settle();
  advance(description.warmUpSeconds);
}

void FakeServices::advance(double seconds) {
  while (seconds > 0) {
    const double step = std::min(seconds, stepSeconds);
    seconds -= step;
    script_.step(step, description.now.secondsSince(clock.now()) - step);
    timers.advance(step);
    settle();
  }
}

void FakeServices::settle() {
  while (agentQueue.runAll() + quickQueue.runAll() + mainThread.runAll() > 0) {
  }
}

void FakeServices::scanAgents() {
  home.write(description.agents, description.limits);
  connectAgents();
  settle();
  store.refreshAgents();
  settle();
}

void FakeServices::addUsage(AgentLogProvider provider, const std::string& session, const AgentTokenMetrics& metrics,
                            Date date) {
  DescribedAgent& agent = description.agents[provider];
  agent.isInstalled = agent.isConnected = true;
  auto known = std::ranges::find(agent.sessions, session, &AdapterUsageSession::id);
  if (known == agent.sessions.end()) known = agent.sessions.insert(known, AdapterUsageSession{session, {}, {}});
  const std::string id = session + "-" + std::to_string(known->events.size());
  known->events.push_back({id, date, metrics});
}

Date FakeServices::today(int hour, int minute) const {
  constexpr int minutesInHour = 60;
  constexpr double secondsInMinute = 60;
  const Date start = calendar().startOfDay(description.now);
  return Date::fromSeconds(start.seconds() + (hour * minutesInHour + minute) * secondsInMinute);
}

void FakeServices::connectAgents() {
  for (const auto& [provider, agent] : description.agents) {
    if (!agent.isConnected || !agent.isInstalled) continue;
    const std::string folder = expectedFolderPath(provider, home.path());
    if (preferences.data(bookmarkKey(provider)) == folder) continue;
    // Refused writes are part of what is tried out: then the agent stays unconnected.
    if (preferences.setData(bookmarkKey(provider), folder)) set(monitoringSettingsKey(provider), true);
  }
}

void FakeServices::useLanguage(std::string_view language) {
  set(SettingsKeys::appLanguage.key, std::string(language));
  settle();
}

void FakeServices::set(std::string_view key, PreferenceValue value) {
  if (const auto result = preferences.set(key, std::move(value)); !result) actions.preferenceFailed(result.error());
}

void FakeServices::setByAnotherProgram(const std::string& key, std::optional<PreferenceValue> value) {
  domain.changeByAnotherProgram(key, std::move(value));
  preferences.refresh();
  settle();
}

void FakeServices::settingsChanged(const std::vector<std::string>& keys) {
  const auto concerns = [&keys](std::string_view start) {
    return std::ranges::any_of(keys, [start](const std::string& key) { return key.starts_with(start); });
  };
  if (concerns(SettingsKeys::appLanguage.key)) applyLanguage();
  if (!isStarted_) return;
  quickStatus.configure();
  if (concerns("settings.agent")) store.refreshAgents();
  if (!concerns(SettingsKeys::refreshInterval.key)) return;
  store.stop();
  store.start();
}

void FakeServices::applyLanguage() {
  const AppLanguage selected = selectedAppLanguage(preferences);
  const std::string_view language = selected == AppLanguage::system ? systemLanguage() : rawValue(selected);
  if (language == language_) return;
  language_ = language;
  installCatalogue(language);
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (QWidget* window : windows) {
    QEvent change(QEvent::LanguageChange);
    QApplication::sendEvent(window, &change);
  }
}

Calendar FakeServices::calendar() const {
  const auto found = Calendar::forZone(description.zone, monday);
  return found ? *found : Calendar::utc(monday);
}

LocaleConventions FakeServices::conventions() const {
  return conventionsOf(language_);
}

}  // namespace quillmeter
