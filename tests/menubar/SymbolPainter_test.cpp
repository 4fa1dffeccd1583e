#include "menubar/SymbolPainter.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include <QtGui/QPainter>
#include "PixelCount.h"
#include "menubar/model/CompactIconOptions.h"
#include "quickstatus/model/QuickStatusSnapshot.h"

namespace quillmeter {

namespace {

using test::inkOf;

// Whatever the catalogues of components, agents, connections and sound outputs name.
constexpr std::array<std::string_view, 33> otherSymbols = {"internaldrive",
                                                           "battery.100.bolt",
                                                           "arrow.up.arrow.down",
                                                           "fanblades.fill",
                                                           "chevron.left.forwardslash.chevron.right",
                                                           "terminal",
                                                           "doc.text.magnifyingglass",
                                                           "person.2.fill",
                                                           "chevron.left.slash.chevron.right",
                                                           "paperplane",
                                                           "pawprint",
                                                           "sparkle",
                                                           "wifi.slash",
                                                           "wifi.exclamationmark",
                                                           "network",
                                                           "link",
                                                           "questionmark",
                                                           "headphones",
                                                           "airpods",
                                                           "hifispeaker.fill",
                                                           "hifispeaker.2.fill",
                                                           "speaker.wave.2.fill",
                                                           "speaker.slash.fill",
                                                           "tv",
                                                           "display",
                                                           "laptopcomputer",
                                                           "airplayaudio",
                                                           "waveform",
                                                           "car.fill",
                                                           "bolt.fill",
                                                           "powerplug.fill",
                                                           "cpu",
                                                           "memorychip"};

bool touchesTheEdge(const QImage& image) {
  const int last = image.width() - 1;
  for (int i = 0; i <= last; ++i) {
    for (const QPoint point : {QPoint(i, 0), QPoint(i, last), QPoint(0, i), QPoint(last, i)}) {
      if (image.pixelColor(point).alpha() > 40) return true;
    }
  }
  return false;
}

TEST(SymbolPainter, everyNameOfTheCataloguesHasItsGlyph) {
  for (const std::string_view name : CompactIconOptions::symbols) EXPECT_TRUE(SymbolPainter::knows(name)) << name;
  for (const std::string_view name : otherSymbols) EXPECT_TRUE(SymbolPainter::knows(name)) << name;
}

TEST(SymbolPainter, whateverASoundOutputIsItsSymbolHasAGlyph) {
  for (const char* transport : {"blue", "blea", "hdmi", "dprt", "airp", "usb ", "virt", "grup", "bltn", "????"}) {
    for (const char* name : {"", "AirPods", "Headset", "HomePod", "LG TV", "Display"}) {
      const QuickAudioDevice device{1, name, transport, ""};
      EXPECT_TRUE(SymbolPainter::knows(device.symbol())) << device.symbol();
    }
  }
}

// Also at the size of a tray icon: two that cannot be told apart there are one symbol.
TEST(SymbolPainter, noTwoGlyphsLookTheSame) {
  for (const double size : {16.0, 48.0}) {
    std::vector<std::pair<std::string_view, QImage>> drawn;
    for (const std::string_view name : SymbolPainter::names()) {
      drawn.emplace_back(name, SymbolPainter::image(name, size, Qt::black));
    }
    for (std::size_t i = 0; i < drawn.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        double difference = 0;
        for (int y = 0; y < static_cast<int>(size); ++y) {
          for (int x = 0; x < static_cast<int>(size); ++x) {
            difference +=
                std::abs(drawn[i].second.pixelColor(x, y).alphaF() - drawn[j].second.pixelColor(x, y).alphaF());
          }
        }
        EXPECT_GT(difference, size * size * 0.02) << drawn[i].first << " and " << drawn[j].first << " at " << size;
      }
    }
  }
}

TEST(SymbolPainter, everyGlyphFillsItsBoxWithoutBeingCutOff) {
  for (const std::string_view name : SymbolPainter::names()) {
    const QImage image = SymbolPainter::image(name, 96, Qt::black);
    EXPECT_GT(inkOf(image), 96 * 96 * 0.05) << name;
    EXPECT_FALSE(touchesTheEdge(image)) << name;
    QRect bounds;
    for (int y = 0; y < 96; ++y) {
      for (int x = 0; x < 96; ++x) {
        if (image.pixelColor(x, y).alpha() > 100) bounds |= QRect(x, y, 1, 1);
      }
    }
    EXPECT_GE(std::max(bounds.width(), bounds.height()), 96 * 0.65) << name;
    EXPECT_LE(std::abs(bounds.center().x() - 48), 6) << name;
    EXPECT_LE(std::abs(bounds.center().y() - 48), 9) << name;
  }
}

TEST(SymbolPainter, anUnknownNameIsDrawnAsTheNeutralGlyph) {
  EXPECT_FALSE(SymbolPainter::knows("no.such.symbol"));
  const QImage unknown = SymbolPainter::image("no.such.symbol", 22, Qt::black);
  EXPECT_GT(inkOf(unknown), 10);
  EXPECT_EQ(unknown, SymbolPainter::image("", 22, Qt::black));
}

TEST(SymbolPainter, aTranslucentColourIsEvenWhereStrokesCross) {
  const QColor half(200, 10, 10, 128);
  const QImage image = SymbolPainter::image("network", 96, half);
  for (int y = 0; y < 96; ++y) {
    for (int x = 0; x < 96; ++x) ASSERT_LE(image.pixelColor(x, y).alpha(), 129);
  }
}

TEST(SymbolPainter, paintingKeepsToTheBoxAndToWhatIsBehindIt) {
  for (const double ratio : {1.0, 1.25, 2.0}) {
    QImage image(static_cast<int>(60 * ratio), static_cast<int>(60 * ratio), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    SymbolPainter::paint(painter, "speaker.slash.fill", QRectF(20.3, 19.8, 20, 20), Qt::black);
    painter.end();
    const QRectF inner(19 * ratio, 19 * ratio, 22 * ratio, 22 * ratio);
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        ASSERT_EQ(image.pixelColor(x, y).alpha(), 255);  // the gap beside the bar is no hole in the background
        const bool isDark = image.pixelColor(x, y).lightness() < 128;
        dark += isDark;
        if (!inner.contains(x, y)) {
          ASSERT_FALSE(isDark) << x << ',' << y << " at " << ratio;
        }
      }
    }
    EXPECT_GT(dark, 60 * ratio * ratio);
  }
}

// A glyph is drawn for the pixels it gets, not drawn small and enlarged.
TEST(SymbolPainter, aPaintedSymbolIsAsSharpAsTheDevice) {
  QImage painted(44, 44, QImage::Format_ARGB32_Premultiplied);
  painted.setDevicePixelRatio(2);
  painted.fill(Qt::transparent);
  QPainter painter(&painted);
  SymbolPainter::paint(painter, "cpu", QRectF(0, 0, 22, 22), Qt::black);
  painter.end();
  QImage whole = SymbolPainter::image("cpu", 22, Qt::black, 2);
  EXPECT_EQ(whole.size(), QSize(44, 44));
  EXPECT_EQ(painted, whole);
}

TEST(SymbolPainter, aBoxWithoutExtentPaintsNothing) {
  QImage image(8, 8, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  const QImage before = image.copy();
  QPainter painter(&image);
  SymbolPainter::paint(painter, "cpu", QRectF(2, 2, 0, 4), Qt::black);
  SymbolPainter::paint(painter, "cpu", QRectF(2, 2, 0.2, 0.2), Qt::black);
  painter.end();
  EXPECT_EQ(image, before);
}

}  // namespace

}  // namespace quillmeter
