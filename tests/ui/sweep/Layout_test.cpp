// Every window and page: room for its texts, a glyph for each letter.
#include <cstdlib>

#include <gtest/gtest.h>
#include <QTextLayout>

#include "sweep/LayoutFaults.h"
#include "sweep/OpenWindow.h"
#include "sweep/TextCatalogue.h"
#include "sweep/VisibleText.h"

namespace quillmeter::test {
namespace {

// The letters of a text that no font has.
QString missingLetters(const QString& text, const QFont& font) {
  QString line = text;
  line.replace(QLatin1Char('\n'), QChar::LineSeparator);
  QTextLayout layout(line, font);
  layout.beginLayout();
  while (layout.createLine().isValid()) {
  }
  layout.endLayout();
  for (const QGlyphRun& run : layout.glyphRuns()) {
    if (run.glyphIndexes().contains(0)) return text;
  }
  return {};
}

class Layout : public testing::TestWithParam<std::string> {
 protected:
  void expectNoFaults(const QSize& size, const char* what) {
    const char* scale = std::getenv("QUILLMETER_TEST_SCALE");
    ASSERT_DOUBLE_EQ(qApp->devicePixelRatio(), scale == nullptr ? 1 : std::atof(scale));
    Desk described(GetParam());
    expectNoFaults(described, size, what);
    Desk bare(GetParam(), bareMachine());
    expectNoFaults(bare, size, (std::string(what) + " of a bare machine").c_str());
    Desk troubled(GetParam(), troubledMachine());
    troubled.bringTrouble();
    expectNoFaults(troubled, size, (std::string(what) + " in trouble").c_str());
  }

 private:
  static void expectNoFaults(Desk& desk, const QSize& size, const char* what) {
    for (Shot& shot : allShots()) {
      if (!size.isEmpty() && !shot.size.isEmpty()) shot.size = size.boundedTo(shot.size);
      const auto window = desk.open(shot);
      for (const std::string& fault : layoutFaults(*window)) {
        ADD_FAILURE() << shot.name << " " << what << " at scale " << window->devicePixelRatioF() << ": " << fault;
      }
    }
  }
};

TEST_P(Layout, givesEveryTextItsRoom) {
  expectNoFaults({}, "at its usual size");
}

TEST_P(Layout, givesEveryTextItsRoomInTheSmallestWindow) {
  expectNoFaults({1, 1}, "at its smallest size");
}

TEST_P(Layout, givesEveryTextItsRoomWhenTheDesktopEnlargesText) {
  for (const bool isTroubled : {false, true}) {
    Desk desk(GetParam(), isTroubled ? troubledMachine() : describedMachine());
    if (isTroubled) desk.bringTrouble();
    for (const Shot& shot : allShots()) {
      const AppearancePreferences usual = desk.appearance.preferences;
      const auto window = desk.open(shot);
      AppearancePreferences large = usual;
      large.textScale = 1.5;
      desk.appearance.change(large);
      desk.settle();
      for (const std::string& fault : layoutFaults(*window)) ADD_FAILURE() << shot.name << ": " << fault;
      desk.appearance.change(usual);
      desk.settle();
      for (const std::string& fault : layoutFaults(*window)) ADD_FAILURE() << shot.name << ", small again: " << fault;
    }
  }
}

TEST_P(Layout, hasAGlyphForEveryLetterShown) {
  Desk desk(GetParam());
  for (const Shot& shot : allShots()) {
    const auto window = desk.open(shot);
    for (const VisibleText& text : visibleTexts(*window)) {
      EXPECT_EQ(missingLetters(text.text, text.font), "")
          << shot.name << ": " << text.place << " (package fonts-wqy-microhei)";
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, Layout, testing::Values("zh-Hans", "en"),
                         [](const auto& language) { return language.param == "en" ? "English" : "Chinese"; });

TEST(Catalogue, hasAGlyphForEveryLetter) {
  const Desk desk;
  for (const auto& [chinese, english] : textCatalogue()) {
    EXPECT_EQ(missingLetters(chinese, QApplication::font()), "");
    EXPECT_EQ(missingLetters(english, QApplication::font()), "");
  }
}

}  // namespace
}  // namespace quillmeter::test
