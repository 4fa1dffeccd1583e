#pragma once

#include <array>
#include <string>
#include <string_view>

namespace quillmeter {

class PreferenceStore;

// How the compact icon is drawn, as the user set it. A value.
struct CompactIconOptions {
  struct Range {
    double minimum;
    double maximum;
  };
  static constexpr Range sizeRange{16.0, 64.0};     // points
  static constexpr Range lineWidthRange{0.5, 6.0};  // points

  // The symbols offered, in the order of the chooser.
  static constexpr std::array<std::string_view, 24> symbols = {"waveform.path.ecg",
                                                               "pawprint.fill",
                                                               "cat.fill",
                                                               "sparkles",
                                                               "cpu",
                                                               "memorychip",
                                                               "gauge.with.dots.needle.50percent",
                                                               "chart.bar.fill",
                                                               "bolt.fill",
                                                               "leaf.fill",
                                                               "heart.fill",
                                                               "star.fill",
                                                               "moon.fill",
                                                               "sun.max.fill",
                                                               "cloud.fill",
                                                               "flame.fill",
                                                               "atom",
                                                               "network",
                                                               "wifi",
                                                               "headphones",
                                                               "airpods",
                                                               "gamecontroller.fill",
                                                               "laptopcomputer",
                                                               "terminal.fill"};

  bool colored = true;  // gauges in colour rather than in the label's
  bool volumeArc = false;
  double lineWidth = 1.8;  // of the rings, points
  double size = 22.0;      // edge length, points
  std::string symbol = "waveform.path.ecg";
  bool audioSymbol = true;  // a wireless headset that is the output shows its symbol

  // The value within the range; `fallback` for one that is not finite.
  static double bounded(double value, double fallback, Range range);
  // The user's choice, with figures in their ranges.
  static CompactIconOptions stored(const PreferenceStore& preferences);

  friend bool operator==(const CompactIconOptions&, const CompactIconOptions&) = default;
};

}  // namespace quillmeter
