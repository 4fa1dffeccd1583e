#include "menubar/MenuBarLabelRenderer.h"

#include <gtest/gtest.h>
#include <QtGui/QColor>
#include <QtGui/QFontDatabase>
#include <QtGui/QImage>

#include "PixelCount.h"
#include "menubar/MenuBarColors.h"

namespace quillmeter {

namespace {

using test::inkOf;

QImage imageOf(const MenuBarLabel& label) {
  return MenuBarLabelRenderer::image(label).value_or(QImage());
}

MenuBarLabel labelOf(std::vector<MenuBarLabelEntry> entries) {
  MenuBarLabel label;
  label.entries = std::move(entries);
  return label;
}

class MenuBarLabelImage : public testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(QFontDatabase::families().isEmpty()) << "the system has no font"; }
};

TEST_F(MenuBarLabelImage, withoutEntriesThereIsNoImage) {
  EXPECT_FALSE(MenuBarLabelRenderer::image({}));
  EXPECT_FALSE(MenuBarLabelRenderer::image({.layout = MenuBarLabelLayout::square}));
}

TEST_F(MenuBarLabelImage, aChangingFigureOfTheSameLengthKeepsTheWidth) {
  const int width = imageOf(labelOf({{"cpu", "11%"}, {"memorychip", "71.1 MB/s"}})).width();
  for (const char* value : {"00%", "48%", "97%"}) {
    EXPECT_EQ(imageOf(labelOf({{"cpu", value}, {"memorychip", "71.1 MB/s"}})).width(), width) << value;
  }
  EXPECT_GT(imageOf(labelOf({{"cpu", "100%"}, {"memorychip", "71.1 MB/s"}})).width(), width);
}

TEST_F(MenuBarLabelImage, eachEntryAddsItsSymbolAndItsText) {
  const QImage one = imageOf(labelOf({{"cpu", "37%"}}));
  const QImage two = imageOf(labelOf({{"cpu", "37%"}, {"memorychip", "62%"}}));
  EXPECT_GT(two.width(), 2 * one.width());
  EXPECT_EQ(two.copy(one.rect()), one);  // what stands to the right moves nothing
  EXPECT_GT(inkOf(one), inkOf(imageOf(labelOf({{"cpu", ""}}))) + 10);
}

TEST_F(MenuBarLabelImage, theTextIsWholeAtEveryScale) {
  for (const MenuBarLabelLayout layout : {MenuBarLabelLayout::row, MenuBarLabelLayout::square}) {
    for (const double height : {16.0, 22.0, 64.0}) {
      for (const double ratio : {1.0, 1.25, 2.0}) {
        MenuBarLabel label = labelOf({{"cpu", "100%"}});
        label.layout = layout;
        label.height = height;
        label.devicePixelRatio = ratio;
        const QImage image = imageOf(label);
        EXPECT_EQ(image.height(), std::lround(height * ratio));
        EXPECT_EQ(image.devicePixelRatio(), ratio);
        if (layout == MenuBarLabelLayout::square) {
          EXPECT_EQ(image.width(), image.height());
        }
        // Nothing is cut off below or at the right: what touches the edge is at most a soft one.
        for (int x = 0; x < image.width(); ++x) EXPECT_LT(image.pixelColor(x, image.height() - 1).alpha(), 200);
        if (layout == MenuBarLabelLayout::row) {
          for (int y = 0; y < image.height(); ++y) EXPECT_LT(image.pixelColor(image.width() - 1, y).alpha(), 200);
        }
      }
    }
  }
}

TEST_F(MenuBarLabelImage, aSquareHoldsLongFiguresByShrinkingThem) {
  MenuBarLabel label = labelOf({{"arrow.up.arrow.down", "12 MB/s"}});
  label.layout = MenuBarLabelLayout::square;
  label.devicePixelRatio = 2;
  EXPECT_EQ(imageOf(label).size(), QSize(44, 44));
}

TEST_F(MenuBarLabelImage, theRoomOfTheWidestValueIsKept) {
  const auto width = [](const char* value) { return imageOf(labelOf({{"cpu", value, "100%"}, {"cpu", "1"}})).width(); };
  EXPECT_EQ(width("7%"), width("100%"));
  EXPECT_GT(width("1000.0K"), width("100%")) << "a wider one takes what it needs";
  MenuBarLabel square = labelOf({{"cpu", "88%", "100%"}});
  square.layout = MenuBarLabelLayout::square;
  const QImage reserved = imageOf(square);
  square.entries.front().widest.clear();
  EXPECT_LT(inkOf(reserved), inkOf(imageOf(square))) << "as large as 100% can be, not larger";
}

TEST_F(MenuBarLabelImage, aFigureWithAUnitFillsTheSquareAlone) {
  MenuBarLabel label = labelOf({{"arrow.down", "888 KB/s"}});
  label.layout = MenuBarLabelLayout::square;
  const QImage image = imageOf(label);
  const int half = image.height() / 2;
  EXPECT_GT(inkOf(image.copy(0, 0, image.width(), half)), 20);
  EXPECT_GT(inkOf(image.copy(0, half, image.width(), half)), 20);
  label.entries.front().symbol = "cpu";
  EXPECT_EQ(imageOf(label), image) << "no room for a symbol";
}

TEST_F(MenuBarLabelImage, textAndSymbolHaveTheLabelsColour) {
  for (const auto& [dark, selected] : {std::pair{false, false}, {true, false}, {false, true}}) {
    MenuBarLabel label = labelOf({{"terminal.fill", "88%"}});
    label.dark = dark;
    label.selected = selected;
    const QColor color = MenuBarColors::label(dark, selected);
    EXPECT_GT(test::countOf(imageOf(label), color), 30) << dark << selected;
    EXPECT_EQ(test::countOf(imageOf(label), MenuBarColors::label(color.lightness() < 128, false)), 0);
  }
}

TEST_F(MenuBarLabelImage, foreignSizesAreBounded) {
  MenuBarLabel label = labelOf({{"cpu", "1%"}});
  label.height = 1e9;
  label.devicePixelRatio = std::nan("");
  EXPECT_EQ(imageOf(label).height(), 64);
}

}  // namespace

}  // namespace quillmeter
