#pragma once

namespace quillmeter {

// Where the parts of a compact icon are, in device pixels; the centre is the middle of the square.
struct IconGeometry {
  // The battery's part of the circle when the volume has the bottom; degrees clockwise from 12 o'clock.
  static constexpr double gapDegrees = 120;
  static constexpr double volumeDegrees = 84;

  double stroke;       // width of the rings
  double outerRadius;  // of the outermost ring's middle line
  double ringStep;     // from one ring's middle line to the next one's

  // `rings` is how many there have to be room for. A stroke too wide for them becomes narrower.
  static IconGeometry fitting(int pixels, double stroke, int rings) {
    const double half = pixels / 2.0;
    // A ring and the gap to the next one take one and a half strokes; the hole within keeps a fifth of the radius.
    const double widest = half * 0.8 / (1.5 * rings);
    const double width = stroke < widest ? stroke : widest;
    return {width, half - width / 2 - half * 0.02, width * 1.5};
  }

  double radius(int ring) const { return outerRadius - ring * ringStep; }
  // Of the free circle within the innermost ring.
  double holeRadius(int rings) const { return radius(rings - 1) - stroke / 2 - stroke * 0.25; }
};

}  // namespace quillmeter
