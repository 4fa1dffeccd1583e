#include "quickstatus/QuickStatusMonitor.h"

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/fake/FakeAudioHardware.h"
#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/fake/ManualQueue.h"
#include "platform/fake/ManualTimerFactory.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

class FakeWifi final : public WifiClient {
 public:
  WifiFacts read() override { return facts; }
  WifiFacts facts;
};

class FakePaths final : public NetworkPathMonitorFactory {
 public:
  struct Monitor final : NetworkPathMonitor {
    explicit Monitor(std::function<void(const NetworkPath&)>& handler) : handler_(handler) {}
    ~Monitor() override { handler_ = nullptr; }
    std::function<void(const NetworkPath&)>& handler_;
  };
  std::unique_ptr<NetworkPathMonitor> start(std::function<void(const NetworkPath&)> updated) override {
    handler = std::move(updated);
    return std::make_unique<Monitor>(handler);
  }
  std::function<void(const NetworkPath&)> handler;
};

class QuickStatusMonitorTest : public testing::Test {
 protected:
  QuickStatusMonitorTest() {
    audio.facts = {{{.id = 5,
                     .name = "Speakers",
                     .transport = "bltn",
                     .mainVolume = 0.5,
                     .canSetMainVolume = true,
                     .mainBalance = 0.5,
                     .canSetMainBalance = true,
                     .muted = false,
                     .canSetMute = true}},
                   5};
  }
  void choose(const std::string& style) { ASSERT_TRUE(preferences.set(SettingsKeys::menuBarStyle.key, style)); }
  void settle() {
    while (queue.runAll() + mainThread.runAll() > 0) {
    }
  }

  ManualTimerFactory timers;
  ManualExecutor mainThread;
  ManualQueue queue;
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences{domain};
  FakePaths paths;
  FakeWifi wifi;
  FakeAudioHardware audio;
  QuickStatusMonitor monitor{{timers, mainThread, queue, preferences, paths, wifi, audio}};
};

TEST_F(QuickStatusMonitorTest, runsForTheDefaultStyleAndForCardsOnly) {
  monitor.configure();
  EXPECT_TRUE(monitor.isRunning()) << "nothing stored: the default style shows it";
  choose("metrics");
  monitor.configure();
  EXPECT_FALSE(monitor.isRunning());
  EXPECT_FALSE(paths.handler);
  EXPECT_TRUE(timers.running().empty());
  ASSERT_TRUE(
      preferences.setData(SettingsKeys::menuBarLayout.key, R"([{"kind":"audio","size":"small","isEnabled":true}])"));
  monitor.configure();
  EXPECT_TRUE(monitor.isRunning());
  ASSERT_TRUE(preferences.remove(SettingsKeys::menuBarLayout.key));
  choose("no such style");
  monitor.configure();
  EXPECT_TRUE(monitor.isRunning()) << "an unknown style is drawn as the default one";
}

TEST_F(QuickStatusMonitorTest, aReadingThatEndsAfterAStopOrARestartPublishesNothing) {
  monitor.configure();
  choose("symbol");
  monitor.configure();
  settle();
  EXPECT_FALSE(monitor.snapshot().output);
  choose("systemTrio");
  monitor.configure();
  queue.runAll();
  choose("symbol");
  monitor.configure();
  choose("systemTrio");
  monitor.configure();
  mainThread.runAll();
  EXPECT_FALSE(monitor.snapshot().output);
  timers.advance(2);
  settle();
  EXPECT_EQ(monitor.snapshot().output->name, "Speakers");
}

TEST_F(QuickStatusMonitorTest, oneReadingAtATimeAndNoneDuringAChange) {
  monitor.configure();
  timers.advance(6);
  EXPECT_EQ(queue.pending(), 1U);
  settle();
  EXPECT_EQ(audio.reads, 1);
  monitor.setVolume(0.8);
  EXPECT_TRUE(monitor.isChanging());
  timers.advance(4);
  EXPECT_EQ(queue.pending(), 1U) << "the change alone";
  settle();
  EXPECT_FALSE(monitor.isChanging());
  EXPECT_EQ(monitor.snapshot().volume, 0.8) << "read again after the change";
}

TEST_F(QuickStatusMonitorTest, theConnectionFollowsThePathAndKeepsThroughReadings) {
  monitor.configure();
  EXPECT_EQ(monitor.snapshot().networkTitle(), "正在采样");
  struct Case {
    NetworkPath path;
    std::optional<bool> powered;
    std::string_view symbol;
    std::string title;
  };
  const Case cases[] = {{{true, true, false}, true, "wifi", "Wi-Fi 已连接"},
                        {{true, true, true}, true, "wifi", "Wi-Fi 已连接"},
                        {{true, false, true}, std::nullopt, "network", "以太网已连接"},
                        {{true, false, false}, std::nullopt, "link", "网络已连接"},
                        {{false, true, false}, false, "wifi.slash", "Wi-Fi 已关闭"},
                        {{false, false, true}, true, "wifi.exclamationmark", "网络未连接"},
                        {{false, false, false}, std::nullopt, "wifi.exclamationmark", "网络未连接"}};
  for (const Case& c : cases) {
    wifi.facts.powered = c.powered;
    paths.handler(c.path);
    timers.advance(2);
    settle();
    EXPECT_EQ(monitor.snapshot().networkSymbol(), c.symbol);
    EXPECT_EQ(monitor.snapshot().networkTitle(), c.title);
  }
}

TEST_F(QuickStatusMonitorTest, aRefusedChangeShowsItsTextUntilTheNextOneIsTaken) {
  monitor.configure();
  settle();
  audio.refuses = true;
  monitor.toggleMute();
  settle();
  EXPECT_EQ(monitor.error(), "设备未接受更改，请在系统声音设置中重试。");
  EXPECT_EQ(monitor.snapshot().muted, false);
  audio.refuses = false;
  monitor.toggleMute();
  settle();
  EXPECT_FALSE(monitor.error());
  EXPECT_EQ(monitor.snapshot().muted, true);
  monitor.setBalance(0.1, 5);
  settle();
  EXPECT_EQ(monitor.snapshot().balance, 0.1);
  monitor.setBalance(0.9, 77);
  settle();
  EXPECT_TRUE(monitor.error()) << "the device has gone";
}

TEST_F(QuickStatusMonitorTest, equalReadingsAreNotPublishedAgainAndOthersChangesAreSeenAtOnce) {
  int changes = 0;
  const Subscription subscription = monitor.onChange([&] { ++changes; });
  monitor.configure();
  settle();
  EXPECT_EQ(changes, 1);
  timers.advance(10);
  settle();
  EXPECT_EQ(changes, 1);
  audio.facts.outputs[0].mainVolume = 0.1;
  audio.changed();
  settle();
  EXPECT_EQ(monitor.snapshot().volume, 0.1);
}

TEST_F(QuickStatusMonitorTest, aChangeElsewhereDuringAReadingIsReadAtOnceToo) {
  monitor.configure();
  queue.runAll();  // the reading looked, and is not published yet
  audio.facts.outputs[0].mainVolume = 0.2;
  audio.changed();
  settle();
  EXPECT_EQ(monitor.snapshot().volume, 0.2);
  EXPECT_EQ(audio.reads, 2);
}

TEST_F(QuickStatusMonitorTest, whatTheQueueBringsAfterTheEndIsDropped) {
  auto other = std::make_unique<QuickStatusMonitor>(
      QuickStatusServices{timers, mainThread, queue, preferences, paths, wifi, audio});
  other->configure();
  other->setVolume(0.9);
  other.reset();
  settle();
  timers.advance(4);
  EXPECT_EQ(audio.facts.outputs[0].mainVolume, 0.9) << "the change itself was on its way";
}

}  // namespace
}  // namespace quillmeter
