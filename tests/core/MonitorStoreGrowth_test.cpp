// Whether a store that runs for hours keeps its memory: the real readers of this machine, the real collector and the
// real record, with time that only the test moves.
#include <malloc.h>

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "access/AgentLogAccessManager.h"
#include "agents/AgentUsageCollector.h"
#include "base/FileOpener.h"
#include "base/Iso8601.h"
#include "core/MachineMetrics.h"
#include "core/MonitorStore.h"
#include "core/SharedSnapshotStore.h"
#include "platform/fake/FakeMachine.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ManualQueue.h"
#include "platform/fake/ManualTimerFactory.h"
#include "platform/linux/JsonPreferenceDomain.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/SystemFolderProbe.h"
#include "preferences/PreferenceStore.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

constexpr int ticks = 10'000;
constexpr std::size_t mostGrowthBytes = 256 * 1024;

TEST(MonitorStoreGrowth, tenThousandTicksKeepTheMemoryAsItIs) {
  const test::TemporaryDirectory home;
  ManualClock clock{*parseIso8601("2026-11-18T00:00:00Z")};
  ManualMonotonicClock uptime;
  ManualTimerFactory timers{&clock, &uptime};
  ManualExecutor mainThread;
  ManualQueue agentQueue;
  for (int i = 0; i < 20; ++i) {
    home.write(".claude/projects/p/" + std::to_string(i) + ".jsonl",
               R"({"type":"assistant","timestamp":"2026-11-18T00:00:00Z","requestId":"r)" + std::to_string(i) +
                   R"(","message":{"usage":{"output_tokens":5}}})" + "\n");
  }
  JsonPreferenceDomain domain("com.kesto.Quillmeter", home.path() / "settings.json", clock);
  JsonPreferenceDomain suite("group.com.kesto.Quillmeter", home.path() / "run/suite.json", clock,
                             {.synchronize = false});
  PreferenceStore preferences{domain};
  const SystemFolderProbe probe;
  AgentLogAccessManager access(preferences, probe, AgentSearchPlaces{home.path(), {}, {}});
  ASSERT_TRUE(access.grantAccess(AgentLogProvider::claude, home.path() / ".claude"));
  Platform platform;
  addLinuxPlatform(platform, uptime);
  MachineMetrics metrics(platform, clock, {});
  SharedSnapshotStore shared(&suite, clock);
  FakeWidgetReload widgets;
  SystemFileOpener opener;
  MonitorStore store({clock, uptime, timers, mainThread, agentQueue, preferences, access, shared, widgets, {}},
                     metrics.sources(),
                     std::make_shared<AgentUsageCollector>(opener, Calendar::utc(), AgentUsageAdapters{}));
  const auto run = [&](int count) {
    for (int i = 0; i < count; ++i) {
      timers.advance(2);
      while (agentQueue.runAll() + mainThread.runAll() > 0) {
      }
    }
  };
  store.start();
  run(100);
  const std::size_t before = mallinfo2().uordblks;
  if (before == 0) GTEST_SKIP() << "this build's allocator does not tell how much is in use";
  const int reloadsBefore = widgets.reloads;
  run(ticks);
  EXPECT_EQ(store.agents().todayTokens(), 100);
  EXPECT_GT(widgets.reloads, reloadsBefore + ticks / 15 - 2);  // scans went on
  const std::size_t after = mallinfo2().uordblks;
  EXPECT_LT(after, before + mostGrowthBytes);
  RecordProperty("growthBytes", static_cast<int>(after) - static_cast<int>(before));
}

}  // namespace
}  // namespace quillmeter
