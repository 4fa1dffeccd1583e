#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "access/model/AgentLogProvider.h"
#include "agents/AgentLogSource.h"
#include "agents/model/AgentUsageSnapshot.h"
#include "base/Clock.h"
#include "base/LocaleConventions.h"
#include "base/Observers.h"
#include "base/SerialQueue.h"
#include "core/SystemSampler.h"
#include "core/model/SampleHistory.h"
#include "core/model/SystemSnapshot.h"
#include "platform/MainExecutor.h"
#include "platform/TimerFactory.h"
#include "platform/WidgetReload.h"

namespace quillmeter {

class AgentLogAccessManager;
class AgentUsageCollector;
class PreferenceStore;
class SharedSnapshotStore;

// What the store works with. All of it outlives the store; the queue ends before the access manager does.
struct MonitorStoreServices {
  const Clock& clock;
  const MonotonicClock& monotonicClock;
  TimerFactory& timers;
  MainExecutor& mainExecutor;
  SerialQueue& agentQueue;
  PreferenceStore& preferences;
  AgentLogAccessManager& agentLogAccess;
  SharedSnapshotStore& sharedSnapshots;
  WidgetReload& widgets;
  LocaleConventions locale;
};

// The spine of the program: samples the machine on a repeating timer, has the agents' logs scanned every 30 seconds on
// the agent queue, hands both to the widget's record and publishes them. It sequences and nothing else. One for the
// life of the process, on the main thread; only scan and cleanup run on the queue, which gets values and gives values
// back.
class MonitorStore {
 public:
  static constexpr double minimumPeriodSeconds = 1.0;
  static constexpr double agentRefreshSeconds = 30.0;
  static constexpr double widgetReloadSeconds = 60.0;
  static constexpr double cleanupSeconds = 2.8;  // a cleanup seems to take at least this long
  static constexpr std::int64_t slowTickEvery = 15;
  static constexpr double networkFullScale = 5'242'880;  // bytes per second, up and down together

  // Migrates old layouts, then registers the defaults of the preferences, before anything reads a setting.
  MonitorStore(const MonitorStoreServices& services, const MetricSources& sources,
               std::shared_ptr<AgentUsageCollector> agentCollector);
  ~MonitorStore();
  MonitorStore(const MonitorStore&) = delete;
  MonitorStore& operator=(const MonitorStore&) = delete;

  void start();
  void stop();
  void refreshAll();
  void refreshAgents();
  void cleanMemory();
  bool isRunning() const { return timer_ != nullptr; }

  const SystemSnapshot& system() const { return system_; }
  const AgentUsageSnapshot& agents() const { return agents_; }
  const std::vector<AgentLogProvider>& detectedAgentProviders() const { return detectedAgentProviders_; }
  const SampleHistory& cpuHistory() const { return cpuHistory_; }
  const SampleHistory& memoryHistory() const { return memoryHistory_; }
  const SampleHistory& networkHistory() const { return networkHistory_; }
  bool isRefreshingAgents() const { return isRefreshingAgents_; }
  bool isCleaningMemory() const { return isCleaningMemory_; }
  const std::optional<std::string>& memoryCleanupMessage() const { return memoryCleanupMessage_; }

  // Told on the main thread after a change: the system sample with its histories; the agents' usage and which agents
  // were found; what is going on (a scan, a cleanup and its message).
  [[nodiscard]] Subscription onSystemChange(std::function<void()> changed) {
    return systemObservers_.add(std::move(changed));
  }
  [[nodiscard]] Subscription onAgentsChange(std::function<void()> changed) {
    return agentsObservers_.add(std::move(changed));
  }
  [[nodiscard]] Subscription onActivityChange(std::function<void()> changed) {
    return activityObservers_.add(std::move(changed));
  }

 private:
  void fire();
  void refreshSystem(bool includeSlowMetrics);
  SampleDepth fastDepth();
  void startAgentScan();
  void publishDetected(std::vector<AgentLogProvider> detected);
  void finishAgentScan(AgentUsageSnapshot snapshot);
  void finishCleanup(std::int64_t releasedBytes);
  void persistSnapshot(bool forceWidgetReload);
  bool isDue(Date last, double seconds) const;
  void assertMainThread() const;

  const MonitorStoreServices services_;
  SystemSampler sampler_;
  MemoryInfo& memory_;
  const std::shared_ptr<AgentUsageCollector> agentCollector_;
  const std::thread::id mainThread_ = std::this_thread::get_id();

  SystemSnapshot system_;
  AgentUsageSnapshot agents_ = AgentUsageSnapshot::empty();
  std::vector<AgentLogProvider> detectedAgentProviders_;
  SampleHistory cpuHistory_;
  SampleHistory memoryHistory_;
  SampleHistory networkHistory_;
  bool isRefreshingAgents_ = false;
  bool isCleaningMemory_ = false;
  bool agentRefreshPending_ = false;
  std::optional<std::string> memoryCleanupMessage_;
  std::unique_ptr<Timer> timer_;
  std::unique_ptr<Timer> cleanupTimer_;
  std::int64_t tick_ = 0;
  Date lastAgentRefresh_ = Date::distantPast();
  Date lastWidgetReload_ = Date::distantPast();
  std::uint64_t layoutRevision_ = 0;  // of the preferences, when showsBattery_ was read
  bool showsBattery_ = false;

  Observers<> systemObservers_;
  Observers<> agentsObservers_;
  Observers<> activityObservers_;
  // What comes back from the queue finds the store by this, and nothing once it is gone.
  std::shared_ptr<MonitorStore*> self_;
};

}  // namespace quillmeter
