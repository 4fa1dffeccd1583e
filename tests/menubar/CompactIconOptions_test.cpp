#include "menubar/model/CompactIconOptions.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "menubar/model/MenuBarStyle.h"
#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

namespace {

TEST(CompactIconOptions, figuresAreBoundedAndWhatIsNoneFallsBack) {
  const double inf = std::numeric_limits<double>::infinity();
  const CompactIconOptions::Range range{1, 3};
  const std::vector<std::pair<double, double>> cases = {{2, 2},    {1, 1},     {3, 3},   {0.99, 1}, {-7, 1},
                                                        {3.01, 3}, {1e300, 3}, {inf, 9}, {-inf, 9}, {std::nan(""), 9}};
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(CompactIconOptions::bounded(value, 9, range), expected) << value;
  }
}

TEST(CompactIconOptions, theStoredChoiceIsReadWithinItsBounds) {
  InMemoryPreferenceDomain domain;
  PreferenceStore store(domain);
  EXPECT_EQ(CompactIconOptions::stored(store), CompactIconOptions());
  ASSERT_TRUE(store.set(SettingsKeys::compactIconColor.key, false));
  ASSERT_TRUE(store.set(SettingsKeys::compactIconArc.key, true));
  ASSERT_TRUE(store.set(SettingsKeys::compactIconStroke.key, 400.0));
  ASSERT_TRUE(store.set(SettingsKeys::compactIconSize.key, -1.0));
  ASSERT_TRUE(store.set(SettingsKeys::compactIconSymbol.key, std::string("cat.fill")));
  ASSERT_TRUE(store.set(SettingsKeys::compactAudioSymbol.key, false));
  const CompactIconOptions expected{.colored = false,
                                    .volumeArc = true,
                                    .lineWidth = CompactIconOptions::lineWidthRange.maximum,
                                    .size = CompactIconOptions::sizeRange.minimum,
                                    .symbol = "cat.fill",
                                    .audioSymbol = false};
  EXPECT_EQ(CompactIconOptions::stored(store), expected);
}

TEST(MenuBarStyle, aTextIsReadBackAndAnUnknownOneIsNone) {
  for (const MenuBarStyle style :
       {MenuBarStyle::metrics, MenuBarStyle::systemTrio, MenuBarStyle::resourceTrio, MenuBarStyle::symbol}) {
    EXPECT_EQ(menuBarStyle(rawValue(style)), style);
  }
  EXPECT_EQ(rawValue(MenuBarStyle::resourceTrio), "resourceTrio");
  for (const char* text : {"", "Metrics", "systemtrio", "symbol ", "trio"}) {
    EXPECT_FALSE(menuBarStyle(text)) << text;
  }
}

TEST(MenuBarStyle, anUnknownStoredTextIsDrawnAsTheDefault) {
  InMemoryPreferenceDomain domain;
  PreferenceStore store(domain);
  EXPECT_EQ(chosenMenuBarStyle(store), MenuBarStyle::systemTrio);
  ASSERT_TRUE(store.set(SettingsKeys::menuBarStyle.key, std::string("symbol")));
  EXPECT_EQ(chosenMenuBarStyle(store), MenuBarStyle::symbol);
  ASSERT_TRUE(store.set(SettingsKeys::menuBarStyle.key, std::string("nonsense")));
  EXPECT_EQ(chosenMenuBarStyle(store), MenuBarStyle::systemTrio);
}

}  // namespace

}  // namespace quillmeter
