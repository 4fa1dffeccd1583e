#include "ui/tray/TrayPicture.h"

#include <gtest/gtest.h>
#include <QImage>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/tray/PanelAppearance.h"
#include "ui/tray/TrayTooltip.h"

namespace quillmeter {

namespace {

int inkOf(const QImage& image) {
  int ink = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) ink += image.pixelColor(x, y).alpha() > 40;
  }
  return ink;
}

class Picture : public testing::Test {
 protected:
  bool update(bool dark = false) { return picture_.update(system_, agents_, quick_, dark); }
  void set(std::string_view key, PreferenceValue value) { ASSERT_TRUE(preferences_.set(key, std::move(value))); }

  InMemoryPreferenceDomain domain_;
  PreferenceStore preferences_{domain_};
  SystemSnapshot system_;
  AgentUsageSnapshot agents_;
  QuickStatusSnapshot quick_;
  TrayPicture picture_{preferences_};
};

TEST_F(Picture, differsOnlyWhenWhatIsToBeSeenDoes) {
  system_.batteryLevel = 0.5;
  EXPECT_TRUE(update());
  EXPECT_FALSE(update());
  system_.cpuUsage = 0.9;  // not part of the default style
  system_.downloadSpeed = "3 MB/s";
  quick_.volume = 0.3;
  EXPECT_FALSE(update());
  system_.batteryLevel = 0.48;
  EXPECT_TRUE(update());
  EXPECT_TRUE(update(true)) << "a dark panel";
  set(SettingsKeys::menuBarStyle.key, "resourceTrio");
  EXPECT_TRUE(update(true));
  system_.cpuUsage = 0.7;
  EXPECT_TRUE(update(true));
  set(SettingsKeys::menuBarStyle.key, "symbol");
  EXPECT_TRUE(update(true));
  system_.cpuUsage = 0.1;
  EXPECT_FALSE(update(true));
  EXPECT_EQ(picture_.paintCount(), 0) << "nobody asked for an image";
}

TEST_F(Picture, textStyleShowsTheChosenFigure) {
  set(SettingsKeys::menuBarStyle.key, "metrics");
  system_.cpuUsage = 0.371;
  EXPECT_TRUE(update());
  system_.cpuUsage = 0.368;
  EXPECT_FALSE(update()) << "37% as before";
  system_.memoryUsage = 0.8;
  EXPECT_FALSE(update());
  set(SettingsKeys::menuBarMetric.key, "memory");
  EXPECT_TRUE(update());
  set(SettingsKeys::menuBarMetric.key, "network");
  EXPECT_TRUE(update());
  system_.uploadSpeed = "9 KB/s";
  EXPECT_FALSE(update()) << "a square has room for the download alone";
  system_.downloadSpeed = "9 KB/s";
  EXPECT_TRUE(update());
}

TEST_F(Picture, everyStyleFillsTheSquareOfEverySize) {
  system_.batteryLevel = 0.8;
  for (const std::string_view style : SettingsKeys::menuBarStyles) {
    set(SettingsKeys::menuBarStyle.key, std::string(style));
    update();
    int before = 0;
    for (const int pixels : {16, 24, 32, 44, 64, 96}) {
      const QImage image = picture_.paint(pixels);
      ASSERT_EQ(image.size(), QSize(pixels, pixels)) << style;
      EXPECT_EQ(image.devicePixelRatio(), 1);
      const int ink = inkOf(image);
      EXPECT_GT(ink, before) << style << ' ' << pixels << ": drawn for its size";
      before = ink;
    }
  }
  for (const int odd : {0, 1, 7, 500}) EXPECT_EQ(picture_.paint(odd).width(), std::max(odd, 1));
}

TEST_F(Picture, aSmallerIconStandsInTheMiddleOfItsSquare) {
  set(SettingsKeys::menuBarStyle.key, "resourceTrio");
  set(SettingsKeys::compactIconSize.key, 16.0);
  EXPECT_TRUE(update());
  const QImage image = picture_.paint(44);
  EXPECT_EQ(inkOf(image.copy(0, 0, 44, 5)), 0);
  EXPECT_EQ(inkOf(image.copy(0, 39, 44, 5)), 0);
  EXPECT_GT(inkOf(image), 100);
}

TEST(PanelAppearance, aTraysOwnTextColourDecidesThenTheShellThenTheDesktop) {
  const TrayForeground white{65535, 65535, 65535};
  const TrayForeground black{0, 0, 0};
  EXPECT_TRUE(isPanelDark(white, "KDE", false));
  EXPECT_FALSE(isPanelDark(black, "GNOME", true));
  EXPECT_TRUE(isPanelDark(std::nullopt, "ubuntu:GNOME", false));
  EXPECT_TRUE(isPanelDark(std::nullopt, "XFCE", false));
  EXPECT_FALSE(isPanelDark(std::nullopt, "GNOME-Flashback:X", false)) << "not the shell";
  EXPECT_FALSE(isPanelDark(std::nullopt, "KDE", false));
  EXPECT_TRUE(isPanelDark(std::nullopt, "", true));
}

TEST(TrayTooltip, leavesOutWhatIsNotKnown) {
  SystemSnapshot system;
  AgentUsageSnapshot agents;
  EXPECT_EQ(trayTooltipText(system, agents), "CPU 0% · 内存 0%\n今天 0 Token");
  system.diskTotal = "1.0 TB";
  system.diskUsage = 0.25;
  system.batteryLevel = 0.8;
  system.batteryState = "使用电池";
  system.batteryTime = "—";
  system.downloadSpeed = "12 KB/s";
  system.uploadSpeed = "Zero KB/s";
  agents.todayMetrics.totalTokens = 12'345;
  agents.weeklyLimitUsed = 0.3;
  EXPECT_EQ(trayTooltipText(system, agents),
            "CPU 0% · 内存 0% · 磁盘 25%\n电量 80% · 使用电池\n↓ 12 KB/s · ↑ Zero KB/s\n今天 12.3K Token\n"
            "Codex 使用额度 · 一周 30%");
}

}  // namespace

}  // namespace quillmeter
