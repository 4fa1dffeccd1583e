#include "core/MonitorStore.h"

#include <cmath>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "access/AgentLogAccessManager.h"
#include "agents/AgentUsageCollector.h"
#include "base/FileOpener.h"
#include "base/Iso8601.h"
#include "core/SharedSnapshotStore.h"
#include "metrics/BatteryInfo.h"
#include "metrics/CpuInfo.h"
#include "metrics/DiskInfo.h"
#include "metrics/FanInfo.h"
#include "metrics/MemoryInfo.h"
#include "metrics/NetworkInfo.h"
#include "platform/fake/FakeMachine.h"
#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ManualQueue.h"
#include "platform/fake/ManualTimerFactory.h"
#include "platform/linux/SystemFolderProbe.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

constexpr std::int64_t mebibyte = 1'048'576;

// A machine, a home with one Claude Code session of 30 tokens, and a store on top of both; time passes only by
// advance().
class MonitorStoreTest : public testing::Test {
 protected:
  MonitorStoreTest() {
    machine.volumeCapacity.volume = VolumeBytes{1'000'000'000'000, 100'000'000'000};
    machine.networkInterfaces.primary = "wan0";
    machine.networkInterfaces.interfaces = {{"wan0", {0, 0}, "10.0.0.7"}};
    addReply("r1", 30);
  }

  void addReply(const std::string& request, int outputTokens) {
    reply += R"({"type":"assistant","timestamp":")" + formatIso8601(clock.now()) + R"(","requestId":")" + request +
             R"(","message":{"usage":{"output_tokens":)" + std::to_string(outputTokens) + "}}}\n";
    home.write(".claude/projects/p/s.jsonl", reply);
  }

  MonitorStore& makeStore() {
    access = std::make_unique<AgentLogAccessManager>(preferences, probe, AgentSearchPlaces{home.path(), {}, {}});
    EXPECT_TRUE(access->grantAccess(AgentLogProvider::claude, home.path() / ".claude"));
    store = std::make_unique<MonitorStore>(
        MonitorStoreServices{clock, uptime, timers, mainThread, agentQueue, preferences, *access, shared,
                             machine.widgetReload, LocaleConventions{}},
        MetricSources{cpu, memory, disk, network, battery, fan, machine.thermalState},
        std::make_shared<AgentUsageCollector>(opener, Calendar::utc(), AgentUsageAdapters{}));
    return *store;
  }

  // Lets everything that waits run, on the queue and on the main thread.
  void settle() {
    while (agentQueue.runAll() + mainThread.runAll() > 0) {
    }
  }

  nlohmann::json widgetRecord() {
    const auto value = suite.get(SettingsKeys::sharedSnapshotKey);
    return value ? nlohmann::json::parse(std::get<PreferenceData>(*value).bytes) : nlohmann::json();
  }

  void setBattery(std::int64_t percent, bool charging) {
    machine.powerSources.sources = {{{"Name", std::string("BAT0")},
                                     {"Current Capacity", percent},
                                     {"Max Capacity", std::int64_t{100}},
                                     {"Is Charging", charging},
                                     {"Time to Empty", std::int64_t{125}},
                                     {"Power Source State", std::string(charging ? "AC Power" : "Battery Power")}}};
  }

  test::TemporaryDirectory home;
  std::string reply;
  ManualClock clock{*parseIso8601("2026-11-18T12:00:00Z")};
  ManualMonotonicClock uptime;
  ManualTimerFactory timers{&clock, &uptime};
  ManualExecutor mainThread;
  ManualQueue agentQueue;
  InMemoryPreferenceDomain domain;
  InMemoryPreferenceDomain suite{"group.com.kesto.Quillmeter"};
  PreferenceStore preferences{domain};
  SystemFolderProbe probe;
  SystemFileOpener opener;
  FakeMachine machine;
  CpuInfo cpu{machine.processorTicks, {}};
  MemoryInfo memory{machine.memoryPages, machine.allocatorRelief};
  DiskInfo disk{machine.volumeCapacity, {}};
  NetworkInfo network{machine.networkInterfaces, clock, {}};
  BatteryInfo battery{machine.powerSources};
  FanInfo fan;
  SharedSnapshotStore shared{&suite, clock};
  std::unique_ptr<AgentLogAccessManager> access;
  std::unique_ptr<MonitorStore> store;
};

TEST_F(MonitorStoreTest, startSamplesScansAndRunsTheTimerAtTheChosenPeriod) {
  MonitorStore& monitor = makeStore();
  monitor.start();
  EXPECT_TRUE(monitor.isRefreshingAgents());
  EXPECT_EQ(monitor.system().diskTotal, "1.0 TB");
  ASSERT_EQ(timers.running().size(), 1U);
  EXPECT_EQ(timers.running()[0].interval, 2.0);
  settle();
  EXPECT_FALSE(monitor.isRefreshingAgents());
  EXPECT_EQ(monitor.agents().todayTokens(), 30);
  EXPECT_THAT(monitor.detectedAgentProviders(), testing::ElementsAre(AgentLogProvider::claude));
  monitor.start();
  EXPECT_EQ(timers.running().size(), 1U) << "a second start does nothing";
  monitor.stop();
  EXPECT_TRUE(timers.running().empty());
}

TEST_F(MonitorStoreTest, aPeriodBelowOneSecondOrNoneIsOneSecond) {
  MonitorStore& monitor = makeStore();
  for (const double stored : {0.5, 0.0, -3.0}) {
    ASSERT_TRUE(preferences.set(SettingsKeys::refreshInterval.key, stored));
    monitor.start();
    EXPECT_EQ(timers.running()[0].interval, 1.0) << stored;
    monitor.stop();
  }
}

TEST_F(MonitorStoreTest, diskAndBatteryAreReadOnEveryFifteenthFiringOnly) {
  ASSERT_TRUE(preferences.set(SettingsKeys::menuBarStyle.key, std::string("symbol")));
  setBattery(60, false);
  MonitorStore& monitor = makeStore();
  monitor.start();
  const int diskReads = machine.volumeCapacity.reads;
  const int batteryReads = machine.powerSources.reads;
  setBattery(50, true);
  timers.advance(2 * 14);
  EXPECT_EQ(machine.volumeCapacity.reads, diskReads);
  EXPECT_EQ(machine.powerSources.reads, batteryReads);
  EXPECT_DOUBLE_EQ(*monitor.system().batteryLevel, 0.6);
  timers.advance(2);
  EXPECT_EQ(machine.volumeCapacity.reads, diskReads + 1);
  EXPECT_DOUBLE_EQ(*monitor.system().batteryLevel, 0.5);
  EXPECT_EQ(monitor.system().batteryState, "充电中");
}

TEST_F(MonitorStoreTest, theBatteryFollowsEachTickWhereItIsShown) {
  setBattery(60, false);
  MonitorStore& monitor = makeStore();
  monitor.start();
  EXPECT_EQ(monitor.system().batteryTime, "剩余 02:05");
  setBattery(59, true);
  timers.advance(2);
  EXPECT_DOUBLE_EQ(*monitor.system().batteryLevel, 0.59);
  machine.powerSources.sources.clear();
  timers.advance(2);
  EXPECT_DOUBLE_EQ(*monitor.system().batteryLevel, 0.59) << "a fast tick without a battery leaves the fields";
  timers.advance(2 * 13);
  EXPECT_FALSE(monitor.system().batteryLevel);
  EXPECT_EQ(monitor.system().batteryTime, "台式 Mac");
  EXPECT_FALSE(widgetRecord().contains("batteryLevel"));
}

TEST_F(MonitorStoreTest, aStyleThatIsNoneIsReadForAsItIsDrawn) {
  setBattery(60, false);
  ASSERT_TRUE(preferences.set(SettingsKeys::menuBarStyle.key, std::string("no such style")));
  MonitorStore& monitor = makeStore();
  monitor.start();
  setBattery(40, false);
  timers.advance(2);
  EXPECT_DOUBLE_EQ(*monitor.system().batteryLevel, 0.4) << "the default style shows the battery";
}

TEST_F(MonitorStoreTest, anEnabledConnectionCardHasTheBatteryReadOnFastTicks) {
  setBattery(60, false);
  ASSERT_TRUE(preferences.set(SettingsKeys::menuBarStyle.key, std::string("metrics")));
  MonitorStore& monitor = makeStore();
  monitor.start();
  setBattery(40, false);
  timers.advance(2);
  EXPECT_DOUBLE_EQ(*monitor.system().batteryLevel, 0.6);
  ASSERT_TRUE(
      preferences.setData(SettingsKeys::dashboardLayout.key, R"([{"kind":"wifi","size":"small","isEnabled":true}])"));
  timers.advance(2);
  EXPECT_DOUBLE_EQ(*monitor.system().batteryLevel, 0.4);
}

TEST_F(MonitorStoreTest, slowReadsRepeatUntilTheVolumeIsRead) {
  machine.volumeCapacity.volume.reset();
  MonitorStore& monitor = makeStore();
  monitor.start();
  timers.advance(4);
  EXPECT_EQ(machine.volumeCapacity.reads, 3);
  EXPECT_EQ(monitor.system().diskTotal, "—");
  machine.volumeCapacity.volume = VolumeBytes{500'000'000'000, 250'000'000'000};
  timers.advance(2);
  EXPECT_EQ(monitor.system().diskTotal, "500.0 GB");
  timers.advance(2);
  EXPECT_EQ(machine.volumeCapacity.reads, 4);
}

TEST_F(MonitorStoreTest, historiesKeepTheNewestTwentyFourClampedValues) {
  MonitorStore& monitor = makeStore();
  monitor.start();
  machine.networkInterfaces.interfaces[0].counters.receivedBytes += 20 * mebibyte;
  timers.advance(2);
  EXPECT_EQ(monitor.networkHistory().values().back(), 1.0) << "10 MiB/s is beyond the scale";
  EXPECT_EQ(monitor.memoryHistory().values().back(), 0.0) << "a machine that does not answer gives no number";
  for (int i = 0; i < 24; ++i) timers.advance(2);
  EXPECT_EQ(monitor.networkHistory().values().front(), 0.0);
  EXPECT_EQ(monitor.networkHistory().values().size(), 24U);
}

TEST_F(MonitorStoreTest, aScanRunsThirtySecondsAfterTheLastOneBegan) {
  MonitorStore& monitor = makeStore();
  monitor.start();
  settle();
  addReply("r2", 12);
  timers.advance(28);
  settle();
  EXPECT_EQ(monitor.agents().todayTokens(), 30);
  timers.advance(2);
  settle();
  EXPECT_EQ(monitor.agents().todayTokens(), 42);
  clock.set(*parseIso8601("2026-11-18T02:00:00Z"));
  addReply("r3", 1);
  timers.advance(2);
  settle();
  EXPECT_EQ(monitor.agents().todayTokens(), 43) << "a clock that was set back does not put the scan off";
}

TEST_F(MonitorStoreTest, requestsDuringAScanGiveOneMoreScanAndDropTheRunningOne) {
  MonitorStore& monitor = makeStore();
  monitor.start();
  agentQueue.runAll();
  addReply("r2", 5);
  monitor.refreshAgents();
  monitor.refreshAgents();
  EXPECT_EQ(agentQueue.pending(), 0U);
  mainThread.runAll();
  EXPECT_EQ(monitor.agents(), AgentUsageSnapshot::empty()) << "the first result is never published";
  EXPECT_EQ(agentQueue.pending(), 1U);
  settle();
  EXPECT_EQ(monitor.agents().todayTokens(), 35);
  EXPECT_EQ(agentQueue.pending(), 0U);
}

TEST_F(MonitorStoreTest, withMonitoringOffNothingIsScannedAndTheWidgetShowsZero) {
  MonitorStore& monitor = makeStore();
  monitor.start();
  settle();
  EXPECT_EQ(widgetRecord()["todayTokens"], 30);
  ASSERT_TRUE(preferences.set(SettingsKeys::tokenMonitoringEnabled.key, false));
  monitor.refreshAgents();
  EXPECT_FALSE(monitor.isRefreshingAgents());
  EXPECT_EQ(monitor.agents().todayTokens(), 0);
  EXPECT_EQ(monitor.agents().lastUpdated, clock.now());
  EXPECT_EQ(monitor.agents().scanStatus, AgentScanStatus::monitoringDisabled());
  EXPECT_EQ(widgetRecord()["todayTokens"], 0);
  settle();
  EXPECT_TRUE(monitor.agents().providers.empty());
}

TEST_F(MonitorStoreTest, aSwitchedOffProviderIsNoSource) {
  ASSERT_TRUE(preferences.set(SettingsKeys::claudeMonitoringEnabled.key, false));
  MonitorStore& monitor = makeStore();
  monitor.start();
  settle();
  EXPECT_TRUE(monitor.agents().providers.empty());
  EXPECT_EQ(monitor.detectedAgentProviders().size(), 1U);
}

TEST_F(MonitorStoreTest, aCleanupTakesItsTimeReportsAndLetsAWaitingScanRun) {
  MonitorStore& monitor = makeStore();
  monitor.start();
  settle();
  machine.allocatorRelief.bytes = 3 * mebibyte;
  monitor.cleanMemory();
  monitor.cleanMemory();
  EXPECT_EQ(agentQueue.pending(), 1U) << "a second press is ignored";
  monitor.refreshAgents();
  EXPECT_EQ(agentQueue.pending(), 1U);
  settle();
  EXPECT_EQ(machine.allocatorRelief.calls, 1);
  timers.advance(2.7);
  EXPECT_TRUE(monitor.isCleaningMemory());
  EXPECT_FALSE(monitor.memoryCleanupMessage());
  timers.advance(0.2);
  EXPECT_FALSE(monitor.isCleaningMemory());
  EXPECT_EQ(monitor.memoryCleanupMessage(), "已释放 3 MB 本应用内存");
  EXPECT_TRUE(monitor.isRefreshingAgents()) << "the scan asked for meanwhile";
  settle();
  machine.allocatorRelief.bytes = 0;
  monitor.cleanMemory();
  EXPECT_FALSE(monitor.memoryCleanupMessage());
  settle();
  timers.advance(3);
  EXPECT_EQ(monitor.memoryCleanupMessage(), "本应用缓存已清理，暂无额外内存可释放");
}

TEST_F(MonitorStoreTest, widgetsReloadAfterEachScanAndElseOnceAMinute) {
  MonitorStore& monitor = makeStore();
  monitor.start();
  EXPECT_EQ(machine.widgetReload.reloads, 1) << "the first sample";
  settle();
  EXPECT_EQ(machine.widgetReload.reloads, 2) << "the scan";
  ASSERT_TRUE(preferences.set(SettingsKeys::tokenMonitoringEnabled.key, false));
  timers.advance(60);
  EXPECT_EQ(machine.widgetReload.reloads, 2);
  timers.advance(2);
  EXPECT_EQ(machine.widgetReload.reloads, 3);
}

TEST_F(MonitorStoreTest, theWidgetRecordHoldsTheFiguresAndTheReferenceDate) {
  setBattery(60, false);
  MonitorStore& monitor = makeStore();
  clock.set(Date{978'307'200'500'000});  // half a second after 2001-01-01 00:00:00 UTC
  monitor.start();
  const nlohmann::json record = widgetRecord();
  EXPECT_EQ(record["batteryLevel"], 0.6);
  EXPECT_EQ(record["diskUsage"], 0.9);
  EXPECT_EQ(record["updatedAt"], 0.5);
  EXPECT_FALSE(record.contains("primaryLimitUsed"));
  suite.refuseWrites(PreferenceProblem{});
  monitor.refreshAll();
  EXPECT_EQ(widgetRecord(), record) << "a failure is silent";
}

TEST_F(MonitorStoreTest, resultsThatComeAfterTheStoreIsGoneAreDropped) {
  makeStore().start();
  agentQueue.runAll();
  store.reset();
  settle();
  timers.advance(10);
}

TEST_F(MonitorStoreTest, creationMigratesTheRetiredCardBeforeDefaultsAreRegistered) {
  ASSERT_TRUE(preferences.setData(SettingsKeys::dashboardLayout.key,
                                  R"([{"kind":"quickStatus","size":"large","isEnabled":true}])"));
  ASSERT_TRUE(preferences.set("settings.quickStatusPanel", true));
  makeStore();
  EXPECT_FALSE(domain.contains("settings.quickStatusPanel"));
  EXPECT_EQ(preferences.data(SettingsKeys::dashboardLayout.key)->find("quickStatus"), std::string::npos);
  EXPECT_EQ(preferences.real(SettingsKeys::refreshInterval.key), 2.0);
}

}  // namespace
}  // namespace quillmeter
