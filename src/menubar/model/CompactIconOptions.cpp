#include "menubar/model/CompactIconOptions.h"

#include <algorithm>
#include <cmath>

#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

double CompactIconOptions::bounded(double value, double fallback, Range range) {
  if (!std::isfinite(value)) return fallback;
  return std::clamp(value, range.minimum, range.maximum);
}

CompactIconOptions CompactIconOptions::stored(const PreferenceStore& preferences) {
  const CompactIconOptions defaults;
  CompactIconOptions options;
  options.colored = preferences.value(SettingsKeys::compactIconColor);
  options.volumeArc = preferences.value(SettingsKeys::compactIconArc);
  options.lineWidth = bounded(preferences.value(SettingsKeys::compactIconStroke), defaults.lineWidth, lineWidthRange);
  options.size = bounded(preferences.value(SettingsKeys::compactIconSize), defaults.size, sizeRange);
  options.symbol = preferences.value(SettingsKeys::compactIconSymbol);
  options.audioSymbol = preferences.value(SettingsKeys::compactAudioSymbol);
  return options;
}

}  // namespace quillmeter
