#include "menubar/CompactStatusRenderer.h"

#include <limits>

#include <gtest/gtest.h>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include "PixelCount.h"
#include "menubar/IconGeometry.h"
#include "menubar/MenuBarColors.h"

namespace quillmeter {

namespace {

using CompactStatusRenderer::batteryColor;
using test::countOf;
using test::inkOf;
using test::shareOfCircle;

const QColor red(0xff, 0x3b, 0x30);
const QColor yellow(0xff, 0xcc, 0x00);
const QColor green(0x34, 0xc7, 0x59);

class CompactIcon : public testing::Test {
 protected:
  CompactIcon() {
    system.batteryLevel = 0.72;
    system.memoryUsage = 0.55;
    system.cpuUsage = 0.3;
    quick.connection = QuickConnection::wifi;
    quick.volume = 0.5;
    quick.muted = false;
  }

  CompactIconDrawing drawing() const {
    return CompactStatusRenderer::drawing(style, system, quick, options, dark, selected, ratio);
  }
  QImage image() const { return CompactStatusRenderer::image(drawing()); }
  IconGeometry geometry(int rings) const {
    return IconGeometry::fitting(drawing().pixels, drawing().strokeQuarters / 4.0, rings);
  }
  std::string centre() const { return drawing().centre ? drawing().centre->symbol : ""; }
  std::string sound() const { return drawing().sound ? drawing().sound->symbol : ""; }

  MenuBarStyle style = MenuBarStyle::systemTrio;
  SystemSnapshot system;
  QuickStatusSnapshot quick;
  CompactIconOptions options;
  bool dark = false;
  bool selected = false;
  double ratio = 2;
};

TEST(BatteryColor, bothBoundsBelongToTheMoreUrgentColour) {
  const double inf = std::numeric_limits<double>::infinity();
  const QColor none = MenuBarColors::secondaryLabel(false, false);
  const std::vector<std::pair<std::optional<double>, QColor>> cases = {
      {std::nullopt, none}, {std::nan(""), none}, {inf, none},   {-inf, none}, {-1, red},    {0, red},  {0.1, red},
      {0.1000001, yellow},  {0.2, yellow},        {0.21, green}, {0.5, green}, {1.0, green}, {7, green}};
  for (const auto& [level, color] : cases) EXPECT_EQ(batteryColor(level), color) << level.value_or(-99);
}

TEST_F(CompactIcon, theBatterysRingIsFilledByItsLevel) {
  options.size = 64;
  for (const double level : {0.0, 0.05, 0.15, 0.25, 0.5, 0.75, 0.99, 1.0}) {
    system.batteryLevel = level;
    EXPECT_NEAR(shareOfCircle(image(), geometry(1).radius(0), batteryColor(level)), level, 0.01) << level;
  }
}

TEST_F(CompactIcon, theFilledPartStartsAtTwelveAndRunsClockwise) {
  options.size = 64;
  system.batteryLevel = 0.25;
  const double radius = geometry(1).radius(0);
  EXPECT_GT(shareOfCircle(image(), radius, green, 3, 87), 0.99);
  EXPECT_EQ(shareOfCircle(image(), radius, green, 93, 357), 0);
}

TEST_F(CompactIcon, threeRingsShowBatteryMemoryAndProcessorFromOutsideIn) {
  style = MenuBarStyle::resourceTrio;
  options.size = 64;
  const IconGeometry rings = geometry(3);
  EXPECT_NEAR(shareOfCircle(image(), rings.radius(0), green), 0.72, 0.01);
  EXPECT_NEAR(shareOfCircle(image(), rings.radius(1), MenuBarColors::memory(false)), 0.55, 0.012);
  EXPECT_NEAR(shareOfCircle(image(), rings.radius(2), MenuBarColors::processor(false)), 0.3, 0.015);
}

TEST_F(CompactIcon, figuresOutsideTheirRangeFillNothingOrAll) {
  style = MenuBarStyle::resourceTrio;
  options.size = 64;
  system.memoryUsage = std::nan("");
  system.cpuUsage = 17;
  const IconGeometry rings = geometry(3);
  EXPECT_EQ(shareOfCircle(image(), rings.radius(1), MenuBarColors::memory(false)), 0);
  EXPECT_GT(shareOfCircle(image(), rings.radius(2), MenuBarColors::processor(false)), 0.99);
}

TEST_F(CompactIcon, theVolumesArcTakesTheBottomOfTheRingAndFillsFromTheLeft) {
  options.size = 64;
  options.volumeArc = true;
  const double radius = geometry(1).radius(0);
  const QColor volume = MenuBarColors::volume(false);
  EXPECT_GT(shareOfCircle(image(), radius, volume, 183, 180 + IconGeometry::volumeDegrees / 2 - 3), 0.98);
  EXPECT_EQ(shareOfCircle(image(), radius, volume, 0, 177), 0);
  const double halfGap = IconGeometry::gapDegrees / 2;
  EXPECT_NEAR(shareOfCircle(image(), radius, green, 180 + halfGap, 540 - halfGap), 0.72, 0.015);
  quick.volume = 0.2;
  EXPECT_NEAR(shareOfCircle(image(), radius, volume), 0.2 * IconGeometry::volumeDegrees / 360, 0.006);
  quick.muted = true;
  EXPECT_EQ(shareOfCircle(image(), radius, volume), 0);
}

TEST_F(CompactIcon, aMachineWithoutABatteryHasItsRingInTheSecondaryLabelsColour) {
  system.batteryLevel.reset();
  for (const bool isDark : {false, true}) {
    dark = isDark;
    for (const MenuBarStyle shown : {MenuBarStyle::systemTrio, MenuBarStyle::resourceTrio}) {
      style = shown;
      const double radius = geometry(shown == MenuBarStyle::systemTrio ? 1 : 3).radius(0);
      EXPECT_GT(shareOfCircle(image(), radius, MenuBarColors::secondaryLabel(dark, false)), 0.97);
    }
  }
}

TEST_F(CompactIcon, theMiddleShowsTroubleThenPowerThenTheNetwork) {
  EXPECT_EQ(centre(), "wifi");
  quick.connection = QuickConnection::ethernet;
  EXPECT_EQ(centre(), "network");
  system.batteryACPowered = true;
  EXPECT_EQ(centre(), "powerplug.fill");
  system.batteryIsCharging = true;
  EXPECT_EQ(centre(), "bolt.fill");
  quick.connection = QuickConnection::offline;
  EXPECT_EQ(centre(), "wifi.exclamationmark");
  quick.wifiPowered = false;
  EXPECT_EQ(centre(), "wifi.slash");
  quick.connection = QuickConnection::checking;
  system = {};
  system.batteryACPowered = true;  // a desktop machine is always plugged in
  EXPECT_EQ(centre(), "questionmark");
}

TEST_F(CompactIcon, theSoundsMarkIsForAMutedOrAWirelessOutput) {
  EXPECT_EQ(sound(), "");
  quick.output = QuickAudioDevice{1, "Speakers", "bltn", ""};
  EXPECT_EQ(sound(), "");
  quick.output = QuickAudioDevice{2, "AirPods", "blue", ""};
  EXPECT_EQ(sound(), "airpods");
  quick.muted = true;
  EXPECT_EQ(sound(), "speaker.slash.fill");
  quick.muted.reset();
  options.audioSymbol = false;
  EXPECT_EQ(sound(), "");
}

TEST_F(CompactIcon, withoutColourOrSelectedAllIsInTheLabelsColour) {
  style = MenuBarStyle::resourceTrio;
  options.size = 64;
  struct Case {
    bool colored, dark, selected;
    QColor label;
  };
  const QColor black = MenuBarColors::label(false, false);
  const QColor white = MenuBarColors::label(true, false);
  for (const Case& c : {Case{false, false, false, black}, Case{false, true, false, white},
                        Case{true, false, true, white}, Case{true, true, true, white}}) {
    options.colored = c.colored;
    dark = c.dark;
    selected = c.selected;
    const QImage drawn = image();
    EXPECT_NEAR(shareOfCircle(drawn, geometry(3).radius(0), c.label), 0.72, 0.01);
    for (int y = 0; y < drawn.height(); ++y) {
      for (int x = 0; x < drawn.width(); ++x) {
        const QColor pixel = drawn.pixelColor(x, y);
        if (pixel.alpha() > 100) {
          ASSERT_NEAR(pixel.red(), c.label.red(), 4);
        }
      }
    }
  }
  EXPECT_NE(black.lightness() < 128, white.lightness() < 128);
}

TEST_F(CompactIcon, theDrawingChangesOnlyWithWhatCanBeSeen) {
  const CompactIconDrawing before = drawing();
  const QImage image = this->image();
  system.cpuUsage = 0.9;
  system.memoryUsage = 0.1;
  system.updatedAt = Date{};
  system.uploadSpeed = "9 MB/s";
  system.batteryLevel = 0.7201;
  quick.volume = 0.9;  // there is no arc
  quick.wifiRSSI = -40;
  quick.output = QuickAudioDevice{1, "Speakers", "bltn", ""};
  options.symbol = "cat.fill";
  EXPECT_EQ(drawing(), before);
  EXPECT_EQ(this->image(), image);
}

TEST_F(CompactIcon, whateverCanBeSeenChangesTheDrawingAndTheImage) {
  const CompactIconDrawing before = drawing();
  const QImage image = this->image();
  const std::vector<std::pair<const char*, std::function<void(CompactIcon&)>>> changes = {
      {"level", [this](auto&) { system.batteryLevel = 0.70; }},
      {"charging", [this](auto&) { system.batteryIsCharging = true; }},
      {"plugged in", [this](auto&) { system.batteryACPowered = true; }},
      {"connection", [this](auto&) { quick.connection = QuickConnection::other; }},
      {"muted", [this](auto&) { quick.muted = true; }},
      {"headset",
       [this](auto&) {
         quick.output = QuickAudioDevice{1, "x", "blue", ""};
       }},
      {"arc", [this](auto&) { options.volumeArc = true; }},
      {"stroke", [this](auto&) { options.lineWidth = 2.5; }},
      {"size", [this](auto&) { options.size = 24; }},
      {"colour", [this](auto&) { options.colored = false; }},
      {"panel", [this](auto&) { dark = true; }},
      {"selection", [this](auto&) { selected = true; }},
      {"ratio", [this](auto&) { ratio = 1; }},
      {"style", [this](auto&) { style = MenuBarStyle::symbol; }}};
  const auto restore = [this, system = system, quick = quick, options = options] {
    this->system = system;
    this->quick = quick;
    this->options = options;
    style = MenuBarStyle::systemTrio;
    dark = selected = false;
    ratio = 2;
  };
  for (const auto& [what, change] : changes) {
    change(*this);
    EXPECT_NE(drawing(), before) << what;
    EXPECT_NE(this->image(), image) << what;
    restore();
  }
  EXPECT_EQ(drawing(), before);
}

TEST_F(CompactIcon, everySizeAndScaleIsSharpAndInsideItsSquare) {
  quick.output = QuickAudioDevice{1, "x", "blue", ""};
  for (const MenuBarStyle shown : {MenuBarStyle::systemTrio, MenuBarStyle::resourceTrio, MenuBarStyle::symbol}) {
    for (const double size : {16.0, 22.0, 24.0, 32.0, 64.0}) {
      for (const double scale : {1.0, 1.25, 2.0}) {
        for (const double stroke : {0.5, 1.8, 6.0}) {
          style = shown;
          options.size = size;
          options.lineWidth = stroke;
          ratio = scale;
          const QImage drawn = image();
          const int edge = static_cast<int>(std::lround(size * scale));
          ASSERT_EQ(drawn.size(), QSize(edge, edge));
          EXPECT_EQ(drawn.devicePixelRatio(), scale);
          EXPECT_GT(inkOf(drawn), edge * edge * 0.05);
          for (const QPoint corner : {QPoint(0, 0), QPoint(edge - 1, 0), QPoint(0, edge - 1)}) {
            EXPECT_EQ(drawn.pixelColor(corner).alpha(), 0);
          }
          if (shown == MenuBarStyle::resourceTrio) {
            EXPECT_GT(geometry(3).holeRadius(3), 0) << size << ' ' << stroke;
          }
        }
      }
    }
  }
}

TEST_F(CompactIcon, optionsThatAreNoFiguresFallBackToTheDefaults) {
  const CompactIconDrawing before = drawing();
  options.size = std::nan("");
  options.lineWidth = std::numeric_limits<double>::infinity();
  EXPECT_EQ(drawing(), before);
  ratio = std::nan("");
  EXPECT_EQ(drawing().pixels, 22);
}

TEST_F(CompactIcon, theSymbolStyleShowsTheChosenSymbolAlone) {
  style = MenuBarStyle::symbol;
  options.symbol = "cat.fill";
  system.batteryIsCharging = true;
  quick.muted = true;
  EXPECT_EQ(centre(), "cat.fill");
  EXPECT_EQ(sound(), "");
  EXPECT_GT(countOf(image(), MenuBarColors::label(false, false)), 300);
  EXPECT_EQ(countOf(image(), green), 0);
}

}  // namespace

}  // namespace quillmeter
