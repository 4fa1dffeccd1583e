#include "ui/theme/Theme.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QWidget>

#include "menubar/TabularText.h"
#include "platform/fake/FakeDesktop.h"
#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/MonitorComponentKind.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/theme/FontDescription.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter::test {
namespace {

const std::vector<std::pair<const char*, QColor ThemeColors::*>> grounds = {
    {"window", &ThemeColors::window}, {"sidebar", &ThemeColors::sidebar}, {"surface", &ThemeColors::surface}};

struct Need {
  const char* name;
  QColor ThemeColors::*color;
  double usual;
  double highContrast;
};

TEST(ThemeColors, everyTextAndMarkIsLegibleOnEveryGround) {
  const std::vector<Need> needs = {
      {"text", &ThemeColors::text, 7, 15},
      {"secondaryText", &ThemeColors::secondaryText, 4.5, 7},
      {"tertiaryText", &ThemeColors::tertiaryText, 3, 7},
      {"accent", &ThemeColors::accent, 4.5, 7},
      {"success", &ThemeColors::success, 4.5, 7},
      {"warning", &ThemeColors::warning, 4.5, 7},
      {"danger", &ThemeColors::danger, 4.5, 7},
      {"focus", &ThemeColors::focus, 3, 4.5},
      {"border", &ThemeColors::border, 1.05, 3},
  };
  for (const bool dark : {false, true}) {
    for (const bool high : {false, true}) {
      const ThemeColors& colors = ThemeColors::of(dark, high);
      SCOPED_TRACE(std::string(dark ? "dark" : "light") + (high ? ", high contrast" : ""));
      for (const Need& need : needs) {
        for (const auto& [ground, member] : grounds) {
          EXPECT_GE(contrastRatio(colors.*need.color, colors.*member), high ? need.highContrast : need.usual)
              << need.name << " on " << ground;
        }
      }
      EXPECT_GE(contrastRatio(colors.accentText, colors.accent), high ? 7 : 4.5);
      for (const QColor& under : {colors.selection, colors.hover, colors.raised, colors.floating})
        EXPECT_GE(contrastRatio(colors.text, under), 7) << under.name().toStdString();
    }
  }
}

TEST(ThemeColors, everyComponentsTintIsLegibleAndKeepsItsHue) {
  for (const bool dark : {false, true}) {
    for (const bool high : {false, true}) {
      const ThemeColors& colors = ThemeColors::of(dark, high);
      for (const MonitorComponentKind kind : allMonitorComponentKinds) {
        const QColor own = QColor::fromString("#" + QString::fromStdString(std::string(tint(kind))));
        for (const auto& [color, least] : {std::pair{colors.tint(tint(kind)), high ? 4.5 : 3.0},
                                           std::pair{colors.textTint(tint(kind)), high ? 7.0 : 4.5}}) {
          EXPECT_GE(contrastRatio(color, colors.surface), least) << tint(kind);
          EXPECT_LE(std::abs(color.hslHue() - own.hslHue()), 4) << tint(kind);
        }
      }
    }
  }
  const ThemeColors& light = ThemeColors::of(false, false);
  for (const char* malformed : {"", "4C8DF", "4C8DFF0", "nocolr"}) EXPECT_EQ(light.tint(malformed), light.accent);
}

TEST(ThemeColors, aWidgetFindsItsAppearanceInItsPalette) {
  for (const bool dark : {false, true}) {
    for (const bool high : {false, true}) {
      const ThemeColors& colors = ThemeColors::of(dark, high);
      QPalette palette = colors.palette();
      palette.setColor(QPalette::Window, Qt::red);
      palette.setColor(QPalette::WindowText, Qt::green);
      EXPECT_EQ(&ThemeColors::of(palette), &colors) << "a widget may have grounds and texts of its own";
    }
  }
  EXPECT_TRUE(ThemeColors::of(QPalette(Qt::black)).dark) << "a foreign palette is judged by its window";
}

TEST(TabularText, digitsKeepTheirPlaces) {
  for (const char* family : {"DejaVu Sans", "WenQuanYi Micro Hei", "URW Bookman"}) {
    QFont font(QString::fromLatin1(family), 20);
    EXPECT_DOUBLE_EQ(TabularText::width(QStringLiteral("11:11"), font),
                     TabularText::width(QStringLiteral("08:47"), font))
        << family;
    EXPECT_GT(TabularText::width(QStringLiteral("100"), font), TabularText::width(QStringLiteral("10"), font));
  }
}

TEST(TabularText, noLetterIsCutOffAboveOrBelow) {
  for (const TextRole role : {TextRole::caption, TextRole::body, TextRole::heading, TextRole::largeFigure}) {
    const QFont font = fontFor(role);
    const int height = TabularText::height(font);
    constexpr int margin = 20;
    QImage canvas(400, height + 2 * margin, QImage::Format_ARGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    painter.setFont(font);
    TabularText::draw(painter, QRectF(0, margin, 400, height), Qt::AlignLeft, QString::fromUtf8("Ågjpqy使用额度ß|"));
    painter.end();
    for (int y = 0; y < canvas.height(); ++y) {
      if (y >= margin && y < margin + height) continue;
      for (int x = 0; x < canvas.width(); ++x) ASSERT_EQ(canvas.pixel(x, y), QColor(Qt::white).rgb()) << y;
    }
  }
}

TEST(FontDescriptions, areReadLeniently) {
  struct Row {
    const char* text;
    QStringList families;
    double points;
  };
  const Row rows[] = {
      {"Cantarell 11", {"Cantarell"}, 11},
      {"Noto Sans Bold Italic 10.5", {"Noto Sans"}, 10.5},
      {"Noto Sans CJK SC, Ubuntu, Semi-Bold 12", {"Noto Sans CJK SC", "Ubuntu"}, 12},
      {"Inter 16px @wght=500 #tnum=1", {"Inter"}, 12},
      {"Source Sans 3", {"Source Sans"}, 0},
      {"Ubuntu", {"Ubuntu"}, 0},
      {"Ubuntu 0", {"Ubuntu 0"}, 0},
      {"Ubuntu 1e9", {"Ubuntu"}, 0},
      {"Ubuntu nan", {"Ubuntu nan"}, 0},
  };
  for (const Row& row : rows)
    EXPECT_EQ(parseFontDescription(row.text), (FontDescription{row.families, row.points})) << row.text;
  for (const char* none : {"", "  ", "11", "Bold 11", ", ,"}) EXPECT_FALSE(parseFontDescription(none)) << none;
  EXPECT_FALSE(parseFontDescription(std::string(1000, 'x')));
}

class ThemeOfTheApplication : public testing::Test {
 protected:
  void choose(const char* theme) {
    ASSERT_TRUE(preferences_.set(SettingsKeys::appTheme.key, PreferenceValue(std::string(theme))));
  }
  static const ThemeColors& shown() { return ThemeColors::of(QApplication::palette()); }

  InMemoryPreferenceDomain domain_;
  PreferenceStore preferences_{domain_};
  FakeDesktopAppearance desktop_;
  Theme theme_{*qApp, preferences_, desktop_};
};

TEST_F(ThemeOfTheApplication, followsTheSettingAndOnlyThenTheDesktop) {
  QWidget widget;
  EXPECT_FALSE(shown().dark) << "light is the default, whatever the desktop prefers";
  desktop_.change({.dark = true});
  EXPECT_FALSE(shown().dark);
  EXPECT_TRUE(theme_.isDesktopDark());

  int told = 0;
  const Subscription changes = theme_.onChange([&told] { ++told; });
  choose("system");
  EXPECT_TRUE(shown().dark);
  QCoreApplication::processEvents();
  EXPECT_TRUE(ThemeColors::of(widget.palette()).dark);
  EXPECT_EQ(told, 1);
  desktop_.change({.dark = false});
  EXPECT_FALSE(shown().dark);
  choose("dark");
  EXPECT_TRUE(shown().dark);
  EXPECT_EQ(told, 3);
  desktop_.change({.highContrast = true});
  EXPECT_TRUE(shown().dark && shown().highContrast);
}

// What is open while the font changes.
struct OpenTexts {
  OpenTexts() { window.show(); }
  bool follow() const {
    return figure->font() == fontFor(TextRole::figure) && note->font() == fontFor(TextRole::caption);
  }
  QWidget window;
  QWidget* plain = new QWidget(&window);
  FigureLabel* figure = new FigureLabel(TextRole::figure, TextTone::primary, plain);
  Paragraph* note = new Paragraph(TextRole::caption, TextTone::secondary, plain);
};

TEST_F(ThemeOfTheApplication, takesTheDesktopsFontToAllThatIsOpen) {
  const QFont usual = QApplication::font();
  OpenTexts open;
  const int usualHeight = open.figure->sizeHint().height();
  desktop_.change({.fontName = "DejaVu Sans Bold 14", .textScale = 1.5});
  QCoreApplication::processEvents();
  EXPECT_EQ(QApplication::font().families().value(0), "DejaVu Sans");
  EXPECT_TRUE(QApplication::font().families().contains("WenQuanYi Micro Hei")) << "hanzi need a font of their own";
  EXPECT_EQ(QApplication::font().pointSizeF(), 21);
  EXPECT_EQ(open.plain->font(), QApplication::font());
  EXPECT_TRUE(open.follow());
  EXPECT_GT(open.figure->sizeHint().height(), usualHeight);

  for (const char* unusable : {"", "No Such Family 30", "30"}) {
    desktop_.change({.fontName = unusable});
    EXPECT_EQ(QApplication::font(), usual) << unusable;
    EXPECT_TRUE(open.follow()) << unusable;
  }
}

TEST_F(ThemeOfTheApplication, keepsItsFallbacksAndScaleWhenTheToolkitChangesTheFont) {
  OpenTexts open;
  desktop_.change({.textScale = 2});
  const QFont before = QApplication::font();
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 12));
  QCoreApplication::processEvents();
  EXPECT_EQ(QApplication::font().families().value(0), "DejaVu Sans");
  EXPECT_TRUE(QApplication::font().families().contains("WenQuanYi Micro Hei"));
  EXPECT_EQ(QApplication::font().pointSizeF(), 24);
  EXPECT_NE(QApplication::font(), before);
  EXPECT_TRUE(open.follow());
}

TEST_F(ThemeOfTheApplication, movesNothingWhereTheDesktopWantsNoMotion) {
  EXPECT_EQ(motionMilliseconds(120), 120);
  desktop_.change({.reducedMotion = true});
  EXPECT_EQ(motionMilliseconds(120), 0);
  desktop_.change({});
  EXPECT_EQ(motionMilliseconds(120), 120);
}

}  // namespace
}  // namespace quillmeter::test
