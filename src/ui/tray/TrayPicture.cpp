#include "ui/tray/TrayPicture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "menubar/CompactStatusRenderer.h"
#include "menubar/MenuBarLabelEntries.h"
#include "preferences/PreferenceStore.h"

namespace quillmeter {

namespace {

// The look is compared as it is at the usual size on the finest screen: what cannot be told apart there is not worth a
// new icon, for which a panel on the message bus asks several questions.
int comparedPixels() {
  return static_cast<int>(std::lround(TrayPicture::usualPixels * qGuiApp->devicePixelRatio()));
}

// Options that give an icon for a square of so many pixels at a ratio of 1 or more.
struct Scaled {
  CompactIconOptions options;
  double ratio;
};

Scaled scaledTo(int pixels, CompactIconOptions options) {
  const double ratio = std::max(1.0, static_cast<double>(pixels) / TrayPicture::usualPixels);
  const double shrink = std::min(1.0, static_cast<double>(pixels) / TrayPicture::usualPixels);
  options.size = std::min(options.size, static_cast<double>(TrayPicture::usualPixels)) * shrink;
  options.lineWidth *= shrink;
  return {std::move(options), ratio};
}

// The image in the middle of a square; a larger one is shrunk.
QImage centred(const QImage& image, int pixels) {
  if (image.width() == pixels && image.height() == pixels) return image;
  QImage square(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  QPainter painter(&square);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const int edge = std::min(image.width(), pixels);
  painter.drawImage(QRect((pixels - edge) / 2, (pixels - edge) / 2, edge, edge), image);
  return square;
}

}  // namespace

void TrayPicture::readSettings() {
  const std::uint64_t revision = preferences_.revision();
  if (revision == settingsRevision_) return;
  settingsRevision_ = revision;
  style_ = chosenMenuBarStyle(preferences_);
  metric_ = chosenMenuBarMetric(preferences_);
  options_ = CompactIconOptions::stored(preferences_);
}

bool TrayPicture::update(const SystemSnapshot& system, const AgentUsageSnapshot& agents,
                         const QuickStatusSnapshot& quick, bool darkPanel) {
  readSettings();
  dark_ = darkPanel;
  Look next;
  if (style_ == MenuBarStyle::metrics) {
    entry_ = menuBarLabelEntries(metric_, system, agents, quick).front();  // a square shows no more
    next = look(comparedPixels());
  } else {
    const auto [options, ratio] = scaledTo(comparedPixels(), options_);
    next = CompactStatusRenderer::drawing(style_, system, quick, options, dark_, false, ratio);
  }
  if (next == shown_) return false;
  shown_ = std::move(next);
  system_ = system;
  quick_ = quick;
  return true;
}

TrayPicture::Look TrayPicture::look(int pixels) const {
  if (style_ != MenuBarStyle::metrics) {
    const auto [options, ratio] = scaledTo(pixels, options_);
    return CompactStatusRenderer::drawing(style_, system_, quick_, options, dark_, false, ratio);
  }
  MenuBarLabel label;
  label.entries = {entry_};
  label.layout = MenuBarLabelLayout::square;
  label.height = std::min(pixels, static_cast<int>(CompactIconOptions::sizeRange.maximum));
  label.devicePixelRatio = pixels / label.height;
  label.dark = dark_;
  return label;
}

QImage TrayPicture::paint(int pixels) const {
  ++paintCount_;
  const Look wanted = look(std::max(pixels, 1));
  QImage image;
  if (const auto* icon = std::get_if<CompactIconDrawing>(&wanted)) {
    image = CompactStatusRenderer::image(*icon);
  } else if (const auto* label = std::get_if<MenuBarLabel>(&wanted)) {
    image = MenuBarLabelRenderer::image(*label).value_or(QImage());
  }
  image.setDevicePixelRatio(1);
  return centred(image, std::max(pixels, 1));
}

}  // namespace quillmeter
