#include "menubar/MenuBarLabelRenderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QtGui/QFont>
#include <QtGui/QFontMetricsF>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "menubar/MenuBarColors.h"
#include "menubar/SymbolPainter.h"
#include "menubar/TabularText.h"
#include "menubar/model/CompactIconOptions.h"

namespace quillmeter::MenuBarLabelRenderer {

namespace {

// The parts of one label in device pixels; fonts of a pixel size need no device for their metrics.
class LabelPainter {
 public:
  explicit LabelPainter(const MenuBarLabel& label)
      : label_(label),
        ratio_(CompactIconOptions::bounded(label.devicePixelRatio, 1, {1, 8})),
        height_(std::max(
            1.0, std::round(CompactIconOptions::bounded(label.height, 22, CompactIconOptions::sizeRange) * ratio_))) {}

  QImage row() const {
    const QFont font = fontOf(height_ * 0.6);
    const double symbol = std::round(height_ * 0.68);
    const double gap = std::round(height_ * 0.14);
    const double betweenEntries = std::round(height_ * 0.4);
    double width = 0;
    for (const MenuBarLabelEntry& entry : label_.entries) {
      width += symbol + gap + room(entry, font) + betweenEntries;
    }
    QImage image = blank(width - betweenEntries);
    QPainter painter(&image);
    prepare(painter);
    double x = 0;
    for (const MenuBarLabelEntry& entry : label_.entries) {
      SymbolPainter::paint(painter, entry.symbol, QRectF(x, (height_ - symbol) / 2, symbol, symbol), color());
      x += symbol + gap;
      painter.setFont(font);
      TabularText::draw(painter, QPointF(x, baseline(font, height_ / 2)), QString::fromStdString(entry.value));
      x += room(entry, font) + betweenEntries;
    }
    painter.end();
    return finished(std::move(image));
  }

  QImage square() const {
    const MenuBarLabelEntry& entry = label_.entries.front();
    QImage image = blank(height_);
    QPainter painter(&image);
    prepare(painter);
    const auto [figure, unit] = split(entry.value);
    if (unit.empty()) {
      const double symbol = std::round(height_ * 0.54);
      SymbolPainter::paint(painter, entry.symbol, QRectF((height_ - symbol) / 2, 0, symbol, symbol), color());
      paintFitted(painter, entry.value, entry.widest, height_ * 0.46, height_ * 0.78);
    } else {
      const auto [widestFigure, widestUnit] = split(entry.widest);
      paintFitted(painter, figure, widestFigure, height_ * 0.56, height_ * 0.27);
      paintFitted(painter, unit, widestUnit, height_ * 0.46, height_ * 0.76);
    }
    painter.end();
    return finished(std::move(image));
  }

 private:
  QColor color() const { return MenuBarColors::label(label_.dark, label_.selected); }

  static QFont fontOf(double pixels) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    font.setWeight(QFont::Medium);
    return font;
  }

  static double room(const MenuBarLabelEntry& entry, const QFont& font) {
    return std::ceil(widthOf(entry.value, entry.widest, font));
  }

  static double widthOf(const std::string& value, const std::string& widest, const QFont& font) {
    return std::max(TabularText::width(QString::fromStdString(value), font),
                    TabularText::width(QString::fromStdString(widest), font));
  }

  // Figure and unit; the unit is empty when there is none.
  static std::pair<std::string, std::string> split(const std::string& value) {
    const std::size_t blank = value.find(' ');
    if (blank == std::string::npos) return {value, {}};
    return {value.substr(0, blank), value.substr(blank + 1)};
  }

  // Centred, as large as `largest` and the square allow.
  void paintFitted(QPainter& painter, const std::string& value, const std::string& widest, double largest,
                   double middle) const {
    constexpr double smallestPixels = 5;
    const QFont full = fontOf(largest);
    const double natural = widthOf(value, widest, full);
    const QFont font =
        natural > height_ ? fontOf(std::max(smallestPixels, std::floor(largest * height_ / natural))) : full;
    const QString text = QString::fromStdString(value);
    painter.setFont(font);
    TabularText::draw(
        painter, QPointF(std::max(0.0, (height_ - TabularText::width(text, font)) / 2), baseline(font, middle)), text);
  }

  // Capitals and digits, centred on the line.
  static double baseline(const QFont& font, double middle) {
    return std::round(middle + QFontMetricsF(font).capHeight() / 2);
  }

  void prepare(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color());
  }

  QImage blank(double width) const {
    QImage image(std::max(1, static_cast<int>(std::ceil(width))), static_cast<int>(height_),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
  }

  QImage finished(QImage image) const {
    image.setDevicePixelRatio(ratio_);
    return image;
  }

  const MenuBarLabel& label_;
  double ratio_;
  double height_;
};

}  // namespace

std::optional<QImage> image(const MenuBarLabel& label) {
  if (label.entries.empty()) return std::nullopt;
  const LabelPainter painter(label);
  return label.layout == MenuBarLabelLayout::square ? painter.square() : painter.row();
}

}  // namespace quillmeter::MenuBarLabelRenderer
