#pragma once

#include <cmath>
#include <functional>
#include <numbers>

#include <QtGui/QColor>
#include <QtGui/QImage>

namespace quillmeter::test {

inline QColor colorAt(const QImage& image, double x, double y) {
  return image.pixelColor(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
}

// Nearly the colour, and opaque to the same degree.
inline bool looksLike(const QColor& seen, const QColor& wanted) {
  constexpr int tolerance = 12;
  return std::abs(seen.red() - wanted.red()) <= tolerance && std::abs(seen.green() - wanted.green()) <= tolerance &&
         std::abs(seen.blue() - wanted.blue()) <= tolerance && std::abs(seen.alpha() - wanted.alpha()) <= tolerance;
}

// The share of a circle about the image's middle on which pixels look like the colour. `from` and `to` are degrees
// clockwise from 12 o'clock; `radius` is in device pixels.
inline double shareOfCircle(const QImage& image, double radius, const QColor& wanted, double from = 0,
                            double to = 360) {
  constexpr int samples = 3600;
  int hits = 0;
  for (int i = 0; i < samples; ++i) {
    const double angle = (from + (to - from) * (i + 0.5) / samples) * std::numbers::pi / 180;
    const double middle = image.width() / 2.0;
    hits += looksLike(colorAt(image, middle + radius * std::sin(angle), middle - radius * std::cos(angle)), wanted);
  }
  return static_cast<double>(hits) / samples;
}

// How many pixels look like the colour.
inline int countOf(const QImage& image, const QColor& wanted) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += looksLike(image.pixelColor(x, y), wanted);
  }
  return count;
}

// The sum of all pixels' opacity, in opaque pixels.
inline double inkOf(const QImage& image) {
  double ink = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) ink += image.pixelColor(x, y).alphaF();
  }
  return ink;
}

}  // namespace quillmeter::test
