#include "menubar/MenuBarLabelEntries.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

namespace {

using Kind = MonitorComponentKind;

// "cpu=37% arrow.up=1 KB/s", for short tables.
std::string textOf(const std::vector<MenuBarLabelEntry>& entries) {
  std::string text;
  for (const auto& entry : entries) text += (text.empty() ? "" : " | ") + entry.symbol + "=" + entry.value;
  return text;
}

struct Sources {
  SystemSnapshot system;
  AgentUsageSnapshot agents;
  QuickStatusSnapshot quick;
  std::string text(Kind kind) const { return textOf(menuBarLabelEntries(kind, system, agents, quick)); }
};

Sources known() {
  Sources sources;
  sources.system.cpuUsage = 0.366;
  sources.system.memoryUsage = 0.5;
  sources.system.diskUsage = 0.995;
  sources.system.diskTotal = "494.38 GB";
  sources.system.batteryLevel = 0.8;
  sources.system.downloadSpeed = "1.4 MB/s";
  sources.system.uploadSpeed = "12 KB/s";
  sources.system.thermalState = "较热";
  sources.system.fanRPM = 1200;
  sources.agents.todayMetrics.totalTokens = 12'345;
  sources.agents.primaryLimitUsed = 0.25;
  sources.agents.weeklyLimitUsed = 1.5;
  sources.quick.connection = QuickConnection::wifi;
  sources.quick.wifiRSSI = -52;
  sources.quick.output = QuickAudioDevice{1, "Built-in", "bltn", "speaker"};
  sources.quick.volume = 0.4;
  return sources;
}

TEST(MenuBarLabelEntries, eachComponentShowsItsFigureFormattedAsElsewhere) {
  const Sources sources = known();
  EXPECT_EQ(sources.text(Kind::cpu), "cpu=37%");
  EXPECT_EQ(sources.text(Kind::memory), "memorychip=50%");
  EXPECT_EQ(sources.text(Kind::disk), "internaldrive=100%");
  EXPECT_EQ(sources.text(Kind::battery), "battery.100.bolt=80%");
  EXPECT_EQ(sources.text(Kind::network), "arrow.down=1.4 MB/s | arrow.up=12 KB/s");
  EXPECT_EQ(sources.text(Kind::fan), "fanblades.fill=1200 RPM");
  EXPECT_EQ(sources.text(Kind::agentTokens), "sparkles=12.3K");
  EXPECT_EQ(sources.text(Kind::agentLimits),
            "gauge.with.dots.needle.50percent=25% | gauge.with.dots.needle.50percent=100%");
  EXPECT_EQ(sources.text(Kind::wifi), "wifi=-52 dBm");
  EXPECT_EQ(sources.text(Kind::audio), std::string(sources.quick.output->symbol()) + "=40%");
}

TEST(MenuBarLabelEntries, whatIsNotKnownIsADash) {
  const Sources sources;  // before the first sample, on a machine that has nothing
  for (const Kind kind : {Kind::disk, Kind::battery, Kind::agentLimits, Kind::wifi, Kind::audio}) {
    EXPECT_TRUE(sources.text(kind).ends_with("=—")) << sources.text(kind);
  }
  EXPECT_EQ(sources.text(Kind::network), "arrow.down=— | arrow.up=—") << "the word for sampling is too long";
  EXPECT_EQ(sources.text(Kind::fan), "fanblades.fill=正常");
}

TEST(MenuBarLabelEntries, symbolsFollowTheState) {
  Sources sources = known();
  sources.quick.muted = true;
  EXPECT_EQ(sources.text(Kind::audio), "speaker.slash.fill=40%");
  sources.quick.connection = QuickConnection::offline;
  sources.quick.wifiPowered = false;
  EXPECT_EQ(sources.text(Kind::wifi), "wifi.slash=—") << "a signal strength of before is not shown";
  sources.agents.primaryLimitUsed.reset();
  EXPECT_EQ(sources.text(Kind::agentLimits), "gauge.with.dots.needle.50percent=100%");
}

TEST(MenuBarLabelEntries, everyComponentHasAtLeastOneEntryAndSharesKeepRoomForAHundred) {
  const Sources sources = known();
  for (const Kind kind : allMonitorComponentKinds) {
    const auto entries = menuBarLabelEntries(kind, sources.system, sources.agents, sources.quick);
    ASSERT_FALSE(entries.empty()) << rawValue(kind);
    if (entries.front().value.ends_with('%')) {
      EXPECT_EQ(entries.front().widest, "100%") << rawValue(kind);
    }
  }
}

TEST(MenuBarLabelEntries, aStoredTextThatNamesNoComponentIsTheDefaultOne) {
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences(domain);
  EXPECT_EQ(chosenMenuBarMetric(preferences), Kind::cpu);
  ASSERT_TRUE(preferences.set(SettingsKeys::menuBarMetric.key, "agentTokens"));
  EXPECT_EQ(chosenMenuBarMetric(preferences), Kind::agentTokens);
  ASSERT_TRUE(preferences.set(SettingsKeys::menuBarMetric.key, "quickStatus"));
  EXPECT_EQ(chosenMenuBarMetric(preferences), Kind::cpu);
}

}  // namespace

}  // namespace quillmeter
