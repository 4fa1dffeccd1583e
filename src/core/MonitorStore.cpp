#include "core/MonitorStore.h"

#include <algorithm>
#include <utility>

#include "access/AgentLogAccessManager.h"
#include "access/AgentSwitch.h"
#include "agents/AgentUsageCollector.h"
#include "base/CheckedInt.h"
#include "core/SharedSnapshotStore.h"
#include "core/model/ByteCountFormatter.h"
#include "metrics/MemoryInfo.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

MonitorStore::MonitorStore(const MonitorStoreServices& services, const MetricSources& sources,
                           std::shared_ptr<AgentUsageCollector> agentCollector)
    : services_(services),
      sampler_(sources),
      memory_(sources.memory),
      agentCollector_(std::move(agentCollector)),
      self_(std::make_shared<MonitorStore*>(this)) {
  DashboardLayoutStorage::migrateLegacyQuickStatus(services_.preferences);
  SettingsKeys::registerDefaults(services_.preferences);
  system_.updatedAt = services_.clock.now();
}

MonitorStore::~MonitorStore() {
  *self_ = nullptr;
}

void MonitorStore::start() {
  assertMainThread();
  if (timer_) return;
  refreshSystem(true);
  refreshAgents();
  const double interval = services_.preferences.real(SettingsKeys::refreshInterval.key).value_or(0);
  const double period = std::max(interval, minimumPeriodSeconds);
  timer_ = services_.timers.repeating(period, period / 4, [self = std::weak_ptr(self_)] {
    if (const auto store = self.lock(); store && *store) (*store)->fire();
  });
}

void MonitorStore::stop() {
  assertMainThread();
  timer_.reset();
}

void MonitorStore::refreshAll() {
  refreshSystem(true);
  refreshAgents();
}

void MonitorStore::fire() {
  tick_ = checkedAdd(tick_, 1);
  refreshSystem(tick_ % slowTickEvery == 0);
  if (isDue(lastAgentRefresh_, agentRefreshSeconds)) refreshAgents();
}

void MonitorStore::refreshSystem(bool includeSlowMetrics) {
  assertMainThread();
  const SampleDepth depth = includeSlowMetrics ? SampleDepth::slow : fastDepth();
  system_ = sampler_.sample(system_, depth, services_.clock.now());
  cpuHistory_.append(system_.cpuUsage);
  memoryHistory_.append(system_.memoryUsage);
  const double traffic = system_.uploadBytesPerSecond + system_.downloadBytesPerSecond;
  networkHistory_.append(std::min(traffic / networkFullScale, 1.0));
  systemObservers_.notify();
  persistSnapshot(false);
}

// The battery is shown by the default style and beside connection and audio cards. The layouts are decoded only when a
// setting has changed.
SampleDepth MonitorStore::fastDepth() {
  const std::uint64_t revision = services_.preferences.revision();
  if (revision != layoutRevision_) {
    layoutRevision_ = revision;
    showsBattery_ = SettingsKeys::chosenMenuBarStyle(services_.preferences) == SettingsKeys::defaultMenuBarStyle ||
                    DashboardLayoutStorage::hasConnectionOrAudioCards(services_.preferences);
  }
  return showsBattery_ ? SampleDepth::fastWithBattery : SampleDepth::fast;
}

void MonitorStore::refreshAgents() {
  assertMainThread();
  if (isRefreshingAgents_ || isCleaningMemory_) {
    agentRefreshPending_ = true;
    return;
  }
  lastAgentRefresh_ = services_.clock.now();
  services_.preferences.refresh();
  if (services_.preferences.value(SettingsKeys::tokenMonitoringEnabled)) {
    isRefreshingAgents_ = true;
    activityObservers_.notify();
    startAgentScan();
    return;
  }
  startAgentScan();
  agents_ = AgentUsageSnapshot::empty();
  agents_.lastUpdated = services_.clock.now();
  agents_.scanStatus = AgentScanStatus::monitoringDisabled();
  agentsObservers_.notify();
  persistSnapshot(false);
}

// Looks for the agents and their folders on the queue as well: a home on a network that hangs must not stop the main
// loop. Settings are read here, so that a scan works with those of the moment it was asked for.
void MonitorStore::startAgentScan() {
  const bool scans = isRefreshingAgents_;
  std::vector<AgentLogProvider> enabled;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    if (isSwitchedOn(services_.preferences, provider)) enabled.push_back(provider);
  }
  services_.agentQueue.post([scans, enabled = std::move(enabled), now = services_.clock.now(),
                             self = std::weak_ptr(self_), &access = services_.agentLogAccess,
                             &main = services_.mainExecutor, collector = agentCollector_] {
    auto detected = access.detectedProviders();
    main.post([self, detected] {
      if (const auto store = self.lock(); store && *store) (*store)->publishDetected(detected);
    });
    if (!scans) return;
    std::vector<AgentLogSource> sources;
    for (const AgentLogProvider provider : detected) {
      if (std::ranges::find(enabled, provider) == enabled.end()) continue;
      sources.push_back({provider, access.location(provider)});
    }
    main.post([self, snapshot = collector->collect(sources, now)]() mutable {
      if (const auto store = self.lock(); store && *store) (*store)->finishAgentScan(std::move(snapshot));
    });
  });
}

void MonitorStore::publishDetected(std::vector<AgentLogProvider> detected) {
  if (detected == detectedAgentProviders_) return;
  detectedAgentProviders_ = std::move(detected);
  agentsObservers_.notify();
}

void MonitorStore::finishAgentScan(AgentUsageSnapshot snapshot) {
  assertMainThread();
  isRefreshingAgents_ = false;
  if (agentRefreshPending_) {  // the newer request wins, so that settings changed meanwhile are honoured
    agentRefreshPending_ = false;
    refreshAgents();
    return;
  }
  agents_ = std::move(snapshot);
  activityObservers_.notify();
  agentsObservers_.notify();
  persistSnapshot(true);
}

void MonitorStore::cleanMemory() {
  assertMainThread();
  if (isCleaningMemory_) return;
  isCleaningMemory_ = true;
  memoryCleanupMessage_.reset();
  activityObservers_.notify();
  const double earliestEnd = services_.monotonicClock.uptime() + cleanupSeconds;
  services_.agentQueue.post([earliestEnd, self = std::weak_ptr(self_), &memory = memory_,
                             &uptime = services_.monotonicClock, &main = services_.mainExecutor,
                             collector = agentCollector_] {
    collector->clearCaches();
    const std::int64_t released = memory.releaseUnusedMemory();
    const double delay = std::max(earliestEnd - uptime.uptime(), 0.0);
    main.post([self, released, delay] {
      const auto store = self.lock();
      if (!store || !*store) return;
      (*store)->cleanupTimer_ = (*store)->services_.timers.once(delay, [self, released] {
        if (const auto later = self.lock(); later && *later) (*later)->finishCleanup(released);
      });
    });
  });
}

void MonitorStore::finishCleanup(std::int64_t releasedBytes) {
  assertMainThread();
  isCleaningMemory_ = false;
  memoryCleanupMessage_ = releasedBytes < 1
                              ? QM_TR("本应用缓存已清理，暂无额外内存可释放")
                              : L10n::format(QM_TR("已释放 %@ 本应用内存"),
                                             {ByteCountFormatter::memory(services_.locale).string(releasedBytes)});
  activityObservers_.notify();
  refreshSystem(false);
  lastAgentRefresh_ = services_.clock.now();  // the caches are rebuilt by the next regular scan
  if (agentRefreshPending_) {
    agentRefreshPending_ = false;
    refreshAgents();
  }
}

void MonitorStore::persistSnapshot(bool forceWidgetReload) {
  services_.sharedSnapshots.save(system_, agents_);
  const Date now = services_.clock.now();
  const double elapsed = now.secondsSince(lastWidgetReload_);
  if (!forceWidgetReload && elapsed >= 0 && elapsed <= widgetReloadSeconds) return;
  lastWidgetReload_ = now;
  services_.widgets.reloadAllTimelines();
}

// A clock that was set back must not put the next scan off until it has caught up.
bool MonitorStore::isDue(Date last, double seconds) const {
  const double elapsed = services_.clock.now().secondsSince(last);
  return elapsed >= seconds || elapsed < 0;
}

void MonitorStore::assertMainThread() const {
  if (std::this_thread::get_id() != mainThread_) fatalError("the monitor store is used off the main thread");
}

}  // namespace quillmeter
