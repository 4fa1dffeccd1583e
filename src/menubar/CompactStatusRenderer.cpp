#include "menubar/CompactStatusRenderer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "core/model/UnitInterval.h"
#include "menubar/IconGeometry.h"
#include "menubar/MenuBarColors.h"
#include "menubar/SymbolPainter.h"

namespace quillmeter::CompactStatusRenderer {

namespace {

constexpr double maximumDevicePixelRatio = 8;

GaugeTint batteryTint(std::optional<double> level) {
  if (!level || !std::isfinite(*level)) return GaugeTint::secondaryLabel;
  if (*level <= 0.1) return GaugeTint::batteryLow;
  if (*level <= 0.2) return GaugeTint::batteryMedium;
  return GaugeTint::batteryHigh;
}

QColor colorOf(GaugeTint tint, bool dark, bool selected) {
  switch (tint) {
    case GaugeTint::label:
      return MenuBarColors::label(dark, selected);
    case GaugeTint::secondaryLabel:
      return MenuBarColors::secondaryLabel(dark, selected);
    case GaugeTint::batteryLow:
    case GaugeTint::trouble:
      return MenuBarColors::trouble(dark);
    case GaugeTint::batteryMedium:
      return dark ? QColor(0xff, 0xd6, 0x0a) : QColor(0xff, 0xcc, 0x00);
    case GaugeTint::batteryHigh:
      return dark ? QColor(0x30, 0xd1, 0x58) : QColor(0x34, 0xc7, 0x59);
    case GaugeTint::memory:
      return MenuBarColors::memory(dark);
    case GaugeTint::processor:
      return MenuBarColors::processor(dark);
    case GaugeTint::network:
      return MenuBarColors::network(dark);
    case GaugeTint::volume:
      break;
  }
  return MenuBarColors::volume(dark);
}

// Decides what one icon shows.
class Composer {
 public:
  Composer(const SystemSnapshot& system, const QuickStatusSnapshot& quick, const CompactIconOptions& options,
           CompactIconDrawing& drawing)
      : system_(system), quick_(quick), options_(options), drawing_(drawing) {}

  void composeSystem() {
    const IconGeometry geometry = geometryFor(1);
    const double batteryDegrees = options_.volumeArc ? 360 - IconGeometry::gapDegrees : 360;
    drawing_.battery = batteryGauge(geometry.radius(0), batteryDegrees);
    if (options_.volumeArc) {
      const double volume = quick_.muted == true ? 0 : quick_.volume.value_or(0);
      drawing_.volume = gauge(volume, geometry.radius(0), IconGeometry::volumeDegrees,
                              quick_.volume ? GaugeTint::volume : GaugeTint::secondaryLabel);
    }
    drawing_.centre = powerOrTroubleMark();
    if (!drawing_.centre) drawing_.centre = networkMark();
    drawing_.sound = soundMark();
  }

  void composeResources() {
    const IconGeometry geometry = geometryFor(3);
    drawing_.battery = batteryGauge(geometry.radius(0), 360);
    drawing_.memory = gauge(system_.memoryUsage, geometry.radius(1), 360, GaugeTint::memory);
    drawing_.processor = gauge(system_.cpuUsage, geometry.radius(2), 360, GaugeTint::processor);
    const double room = 2 * geometry.holeRadius(3);
    constexpr double leastMarkPixels = 6;
    constexpr double leastSymbolPixels = 10;
    if (room < leastMarkPixels) return;
    drawing_.centre = powerOrTroubleMark();
    if (!drawing_.centre && room >= leastSymbolPixels) composeSymbol();
  }

  void composeSymbol() { drawing_.centre = MarkDrawing{options_.symbol, GaugeTint::label}; }

 private:
  IconGeometry geometryFor(int rings) const {
    return IconGeometry::fitting(drawing_.pixels, drawing_.strokeQuarters / 4.0, rings);
  }

  GaugeTint tinted(GaugeTint tint) const {
    if (tint == GaugeTint::secondaryLabel || (options_.colored && !drawing_.selected)) return tint;
    return GaugeTint::label;
  }

  // In steps of half a pixel along the line.
  GaugeDrawing gauge(double fraction, double radius, double degrees, GaugeTint tint) const {
    const double length = 2 * std::numbers::pi * radius * degrees / 360;
    const int count = std::max(8, static_cast<int>(std::lround(2 * length)));
    return {static_cast<int>(std::lround(clampToUnit(fraction) * count)), count, tinted(tint)};
  }

  GaugeDrawing batteryGauge(double radius, double degrees) const {
    return gauge(system_.batteryLevel.value_or(0), radius, degrees, batteryTint(system_.batteryLevel));
  }

  // No connection comes first; the power source of a machine without a battery is not worth a mark.
  std::optional<MarkDrawing> powerOrTroubleMark() const {
    if (quick_.connection == QuickConnection::offline) return networkMark();
    if (!system_.batteryLevel) return std::nullopt;
    const GaugeTint tint = tinted(batteryTint(system_.batteryLevel));
    if (system_.batteryIsCharging) return MarkDrawing{"bolt.fill", tint};
    if (system_.batteryACPowered) return MarkDrawing{"powerplug.fill", tint};
    return std::nullopt;
  }

  MarkDrawing networkMark() const {
    GaugeTint tint = GaugeTint::network;
    if (quick_.connection == QuickConnection::offline) tint = GaugeTint::trouble;
    if (quick_.connection == QuickConnection::checking) tint = GaugeTint::secondaryLabel;
    return {std::string(quick_.networkSymbol()), tinted(tint)};
  }

  std::optional<MarkDrawing> soundMark() const {
    if (quick_.muted == true) return MarkDrawing{"speaker.slash.fill", tinted(GaugeTint::trouble)};
    if (!options_.audioSymbol || !quick_.output || !quick_.output->isBluetooth()) return std::nullopt;
    return MarkDrawing{std::string(quick_.output->symbol()), GaugeTint::label};
  }

  const SystemSnapshot& system_;
  const QuickStatusSnapshot& quick_;
  const CompactIconOptions& options_;
  CompactIconDrawing& drawing_;
};

// Paints one drawing, in device pixels.
class IconPainter {
 public:
  IconPainter(QImage& image, const CompactIconDrawing& drawing)
      : painter_(&image), drawing_(drawing), middle_(drawing.pixels / 2.0) {
    painter_.setRenderHint(QPainter::Antialiasing);
  }

  void paint() {
    if (drawing_.battery) {
      paintGauges();
    } else if (drawing_.centre) {
      paintMark(*drawing_.centre, 0, 0, drawing_.pixels);
    }
  }

 private:
  void paintGauges() {
    const int rings = drawing_.memory ? 3 : 1;
    const IconGeometry geometry = IconGeometry::fitting(drawing_.pixels, drawing_.strokeQuarters / 4.0, rings);
    constexpr double halfGap = IconGeometry::gapDegrees / 2;
    constexpr double halfVolume = IconGeometry::volumeDegrees / 2;
    if (drawing_.volume) {
      paintGauge(*drawing_.battery, geometry.radius(0), geometry.stroke, 180 + halfGap, 360 - 2 * halfGap);
      paintGauge(*drawing_.volume, geometry.radius(0), geometry.stroke, 180 + halfVolume, -2 * halfVolume);
    } else {
      paintGauge(*drawing_.battery, geometry.radius(0), geometry.stroke, 0, 360);
    }
    if (drawing_.memory) paintGauge(*drawing_.memory, geometry.radius(1), geometry.stroke, 0, 360);
    if (drawing_.processor) paintGauge(*drawing_.processor, geometry.radius(2), geometry.stroke, 0, 360);
    paintMarks(geometry.holeRadius(rings));
  }

  // Squares that stay clear of the rings: one alone, or a smaller one below the other.
  void paintMarks(double room) {
    if (drawing_.centre && drawing_.sound) {
      paintMark(*drawing_.centre, 0, -0.42 * room, 0.98 * room);
      paintMark(*drawing_.sound, 0, 0.5 * room, 0.78 * room);
    } else if (drawing_.centre) {
      paintMark(*drawing_.centre, 0, 0, 1.5 * room);
    }
  }

  void paintMark(const MarkDrawing& mark, double x, double y, double edge) {
    const QRectF box(middle_ + x - edge / 2, middle_ + y - edge / 2, edge, edge);
    SymbolPainter::paint(painter_, mark.symbol, box, color(mark.tint));
  }

  // From `start`, degrees clockwise from 12 o'clock, over `span` degrees; the filled part covers the track.
  void paintGauge(const GaugeDrawing& gauge, double radius, double stroke, double start, double span) {
    const double filled = span * gauge.steps / gauge.stepCount;
    const QColor full = color(gauge.tint);
    // A gauge without a figure shows itself, not an empty track.
    const bool isUnknown = gauge.tint == GaugeTint::secondaryLabel;
    paintArc(radius, stroke, start + filled, span - filled, isUnknown ? full : MenuBarColors::track(full));
    if (gauge.steps > 0) paintArc(radius, stroke, start, filled, full);
  }

  void paintArc(double radius, double stroke, double start, double span, const QColor& color) {
    constexpr double sixteenths = 16;
    if (std::abs(span) < 1 / sixteenths) return;
    painter_.setPen(QPen(color, stroke, Qt::SolidLine, Qt::FlatCap));
    const QRectF box(middle_ - radius, middle_ - radius, 2 * radius, 2 * radius);
    painter_.drawArc(box, static_cast<int>(std::lround((90 - start) * sixteenths)),
                     static_cast<int>(std::lround(-span * sixteenths)));
  }

  QColor color(GaugeTint tint) const { return colorOf(tint, drawing_.dark, drawing_.selected); }

  QPainter painter_;
  const CompactIconDrawing& drawing_;
  double middle_;
};

}  // namespace

CompactIconDrawing drawing(MenuBarStyle style, const SystemSnapshot& system, const QuickStatusSnapshot& quick,
                           const CompactIconOptions& options, bool dark, bool selected, double devicePixelRatio) {
  const CompactIconOptions defaults;
  const double ratio = CompactIconOptions::bounded(devicePixelRatio, 1, {1, maximumDevicePixelRatio});
  const double size = CompactIconOptions::bounded(options.size, defaults.size, CompactIconOptions::sizeRange);
  const double stroke =
      CompactIconOptions::bounded(options.lineWidth, defaults.lineWidth, CompactIconOptions::lineWidthRange);
  CompactIconDrawing drawing{.style = style,
                             .pixels = static_cast<int>(std::lround(size * ratio)),
                             .strokeQuarters = static_cast<int>(std::lround(stroke * ratio * 4)),
                             .devicePixelRatio = ratio,
                             .dark = dark,
                             .selected = selected};
  Composer composer(system, quick, options, drawing);
  switch (style) {
    case MenuBarStyle::systemTrio:
      composer.composeSystem();
      break;
    case MenuBarStyle::resourceTrio:
      composer.composeResources();
      break;
    case MenuBarStyle::metrics:
    case MenuBarStyle::symbol:
      composer.composeSymbol();
      break;
  }
  return drawing;
}

QImage image(const CompactIconDrawing& drawing) {
  QImage image(drawing.pixels, drawing.pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  if (!image.isNull()) IconPainter(image, drawing).paint();
  image.setDevicePixelRatio(drawing.devicePixelRatio);
  return image;
}

QImage image(MenuBarStyle style, const SystemSnapshot& system, const QuickStatusSnapshot& quick,
             const CompactIconOptions& options, bool dark, bool selected, double devicePixelRatio) {
  return image(drawing(style, system, quick, options, dark, selected, devicePixelRatio));
}

QColor batteryColor(std::optional<double> level, bool dark) {
  return colorOf(batteryTint(level), dark, false);
}

}  // namespace quillmeter::CompactStatusRenderer
