#pragma once

#include <optional>
#include <string>

#include "menubar/model/MenuBarStyle.h"

namespace quillmeter {

// What a gauge's colour stands for; the panel decides how it looks.
enum class GaugeTint {
  label,
  secondaryLabel,
  batteryLow,
  batteryMedium,
  batteryHigh,
  memory,
  processor,
  network,
  volume,
  trouble
};

// One ring or arc, filled by so many of its visible steps.
struct GaugeDrawing {
  int steps = 0;      // filled
  int stepCount = 1;  // of the whole gauge: no more than can be told apart
  GaugeTint tint = GaugeTint::label;

  friend bool operator==(const GaugeDrawing&, const GaugeDrawing&) = default;
};

struct MarkDrawing {
  std::string symbol;
  GaugeTint tint = GaugeTint::label;

  friend bool operator==(const MarkDrawing&, const MarkDrawing&) = default;
};

// All that a compact icon's drawing depends on, rounded to what can be seen: equal drawings give equal images, so the
// owner keeps the last one and draws again only when it differs. A value.
struct CompactIconDrawing {
  MenuBarStyle style = defaultMenuBarStyle;
  int pixels = 0;          // edge length in device pixels
  int strokeQuarters = 0;  // ring stroke width, quarters of a device pixel
  double devicePixelRatio = 1;
  bool dark = false;
  bool selected = false;
  std::optional<GaugeDrawing> battery;  // rings and arc are absent where the style has none
  std::optional<GaugeDrawing> memory;
  std::optional<GaugeDrawing> processor;
  std::optional<GaugeDrawing> volume;
  std::optional<MarkDrawing> centre;
  std::optional<MarkDrawing> sound;  // below the centre

  friend bool operator==(const CompactIconDrawing&, const CompactIconDrawing&) = default;
};

}  // namespace quillmeter
