#pragma once

#include <string_view>

class QPainter;
class QPainterPath;

namespace quillmeter {

// The pen that all glyphs are drawn with: a grid of 24 units, one stroke weight, round caps and joins. Shapes are texts
// in the language of SVG paths (M L H V C Q Z, capitals absolute and small letters relative; no arcs), which the glyphs
// bring along as literals. Lives for one drawing; the painter paints onto a transparent layer, so that cutting removes
// only what the glyph itself drew.
class GlyphCanvas {
 public:
  static constexpr double gridUnits = 24;
  static constexpr double weight = 2;  // of every stroke, grid units

  explicit GlyphCanvas(QPainter& painter) : painter_(painter) {}

  void stroke(std::string_view path, double width = weight);
  // Fills and rounds the corners off by half of `rounding`.
  void fill(std::string_view path, double rounding = 1);
  void cut(std::string_view path);
  void cutStroke(std::string_view path, double width = weight);

  void circle(double x, double y, double radius);
  // Angles in degrees, counter-clockwise from three o'clock.
  void arc(double x, double y, double radius, double start, double sweep);
  void ellipse(double x, double y, double radiusX, double radiusY, double degrees);  // outlined, turned clockwise
  void dot(double x, double y, double radius);
  void cutDot(double x, double y, double radius);
  void frame(double x, double y, double width, double height, double radius);  // outlined
  void plate(double x, double y, double width, double height, double radius);  // filled
  void cutPlate(double x, double y, double width, double height, double radius);
  // Turns what follows about the point, clockwise.
  void turn(double degrees, double x, double y);
  // What crosses a symbol that is off: a bar from the upper left with a gap beside it.
  void slash();

 private:
  void draw(const QPainterPath& path, double width, bool filled, bool cutting);

  QPainter& painter_;
};

}  // namespace quillmeter
