#include "menubar/SymbolPainter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <unordered_map>

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "menubar/glyphs/GlyphCanvas.h"
#include "menubar/glyphs/GlyphTable.h"

namespace quillmeter::SymbolPainter {

namespace {

using Drawing = void (*)(GlyphCanvas&);

std::array<std::span<const GlyphEntry>, 6> tables() {
  return {machineGlyphs(), natureGlyphs(), networkGlyphs(), audioGlyphs(), agentGlyphs(), interfaceGlyphs()};
}

const std::unordered_map<std::string_view, Drawing>& drawings() {
  static const auto all = [] {
    std::unordered_map<std::string_view, Drawing> drawn;
    for (const auto& table : tables()) {
      for (const GlyphEntry& entry : table) drawn.emplace(entry.name, entry.draw);
    }
    return drawn;
  }();
  return all;
}

void drawNeutral(GlyphCanvas& canvas) {
  canvas.frame(4, 4, 16, 16, 4);
  canvas.dot(12, 12, 2.2);
}

Drawing drawingOf(std::string_view name) {
  const auto found = drawings().find(name);
  return found == drawings().end() ? drawNeutral : found->second;
}

// The symbol in a square of pixels. Glyphs are drawn opaque and tinted as a whole: strokes that overlap do not add up
// under a translucent colour.
QImage layer(std::string_view name, int pixels, const QColor& color) {
  QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const double scale = pixels / GlyphCanvas::gridUnits;
  painter.save();
  painter.scale(scale, scale);
  GlyphCanvas canvas(painter);
  drawingOf(name)(canvas);
  painter.restore();
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), color);
  return image;
}

}  // namespace

bool knows(std::string_view name) {
  return drawings().contains(name);
}

std::vector<std::string_view> names() {
  std::vector<std::string_view> all;
  for (const auto& [name, drawing] : drawings()) all.push_back(name);
  return all;
}

void paint(QPainter& painter, std::string_view name, const QRectF& box, const QColor& color) {
  // The device transform holds the pixel ratio of the device, too.
  const QRectF device = painter.deviceTransform().mapRect(box);
  const int pixels = static_cast<int>(std::lround(std::min(device.width(), device.height())));
  if (pixels <= 0) return;
  const QPointF corner(std::round(device.center().x() - pixels / 2.0), std::round(device.center().y() - pixels / 2.0));
  const QRectF target = painter.deviceTransform().inverted().mapRect(QRectF(corner, QSizeF(pixels, pixels)));
  painter.drawImage(target, layer(name, pixels, color));
}

QImage image(std::string_view name, double size, const QColor& color, double devicePixelRatio) {
  const int pixels = std::max(1, static_cast<int>(std::lround(size * devicePixelRatio)));
  QImage drawn = layer(name, pixels, color);
  drawn.setDevicePixelRatio(devicePixelRatio);
  return drawn;
}

}  // namespace quillmeter::SymbolPainter
