#include "menubar/glyphs/GlyphCanvas.h"

#include <cctype>
#include <charconv>
#include <cstddef>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace quillmeter {

namespace {

// Reads a path text. What is malformed ends the shape there: the texts are literals of this program, and each is drawn
// by a test.
class PathReader {
 public:
  explicit PathReader(std::string_view text) : text_(text) {}

  QPainterPath read() {
    while (skipBlanks(), position_ < text_.size()) {
      if (std::isalpha(static_cast<unsigned char>(text_[position_])) != 0) command_ = text_[position_++];
      if (!step()) break;
    }
    return path_;
  }

 private:
  void skipBlanks() {
    while (position_ < text_.size() && (text_[position_] == ' ' || text_[position_] == ',')) ++position_;
  }

  bool number(double& value) {
    skipBlanks();
    const char* end = text_.data() + text_.size();
    const auto [next, error] = std::from_chars(text_.data() + position_, end, value);
    if (error != std::errc()) return false;
    position_ = static_cast<std::size_t>(next - text_.data());
    return true;
  }

  bool point(QPointF& value) {
    double x = 0;
    double y = 0;
    if (!number(x) || !number(y)) return false;
    value = origin() + QPointF(x, y);
    return true;
  }

  bool isRelative() const { return std::islower(static_cast<unsigned char>(command_)) != 0; }
  QPointF origin() const { return isRelative() ? path_.currentPosition() : QPointF(); }

  bool step() {
    QPointF a;
    QPointF b;
    QPointF c;
    double along = 0;
    switch (std::toupper(static_cast<unsigned char>(command_))) {
      case 'M':
        if (!point(a)) return false;
        path_.moveTo(a);
        command_ = isRelative() ? 'l' : 'L';
        return true;
      case 'L':
        if (!point(a)) return false;
        path_.lineTo(a);
        return true;
      case 'H':
        if (!number(along)) return false;
        path_.lineTo(origin().x() + along, path_.currentPosition().y());
        return true;
      case 'V':
        if (!number(along)) return false;
        path_.lineTo(path_.currentPosition().x(), origin().y() + along);
        return true;
      case 'C':
        if (!point(a) || !point(b) || !point(c)) return false;
        path_.cubicTo(a, b, c);
        return true;
      case 'Q':
        if (!point(a) || !point(b)) return false;
        path_.quadTo(a, b);
        return true;
      case 'Z':
        path_.closeSubpath();
        command_ = 0;
        return true;
      default:
        return false;
    }
  }

  std::string_view text_;
  std::size_t position_ = 0;
  char command_ = 0;
  QPainterPath path_;
};

QPainterPath circlePath(double x, double y, double radius) {
  QPainterPath path;
  path.addEllipse(QPointF(x, y), radius, radius);
  return path;
}

QPainterPath platePath(double x, double y, double width, double height, double radius) {
  QPainterPath path;
  path.addRoundedRect(QRectF(x, y, width, height), radius, radius);
  return path;
}

}  // namespace

void GlyphCanvas::draw(const QPainterPath& path, double width, bool filled, bool cutting) {
  painter_.setCompositionMode(cutting ? QPainter::CompositionMode_DestinationOut
                                      : QPainter::CompositionMode_SourceOver);
  painter_.setPen(width > 0 ? QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin) : QPen(Qt::NoPen));
  painter_.setBrush(filled ? QBrush(Qt::black) : QBrush(Qt::NoBrush));
  painter_.drawPath(path);
}

void GlyphCanvas::stroke(std::string_view path, double width) {
  draw(PathReader(path).read(), width, false, false);
}
void GlyphCanvas::fill(std::string_view path, double rounding) {
  draw(PathReader(path).read(), rounding, true, false);
}
void GlyphCanvas::cut(std::string_view path) {
  draw(PathReader(path).read(), 0, true, true);
}
void GlyphCanvas::cutStroke(std::string_view path, double width) {
  draw(PathReader(path).read(), width, false, true);
}

void GlyphCanvas::circle(double x, double y, double radius) {
  draw(circlePath(x, y, radius), weight, false, false);
}

void GlyphCanvas::arc(double x, double y, double radius, double start, double sweep) {
  const QRectF box(x - radius, y - radius, 2 * radius, 2 * radius);
  QPainterPath path;
  path.arcMoveTo(box, start);
  path.arcTo(box, start, sweep);
  draw(path, weight, false, false);
}

void GlyphCanvas::ellipse(double x, double y, double radiusX, double radiusY, double degrees) {
  QPainterPath path;
  path.addEllipse(QPointF(), radiusX, radiusY);
  draw(QTransform().translate(x, y).rotate(degrees).map(path), weight, false, false);
}

void GlyphCanvas::dot(double x, double y, double radius) {
  draw(circlePath(x, y, radius), 0, true, false);
}
void GlyphCanvas::cutDot(double x, double y, double radius) {
  draw(circlePath(x, y, radius), 0, true, true);
}

void GlyphCanvas::frame(double x, double y, double width, double height, double radius) {
  draw(platePath(x, y, width, height, radius), weight, false, false);
}

void GlyphCanvas::plate(double x, double y, double width, double height, double radius) {
  draw(platePath(x, y, width, height, radius), 0, true, false);
}

void GlyphCanvas::cutPlate(double x, double y, double width, double height, double radius) {
  draw(platePath(x, y, width, height, radius), 0, true, true);
}

void GlyphCanvas::turn(double degrees, double x, double y) {
  painter_.translate(x, y);
  painter_.rotate(degrees);
  painter_.translate(-x, -y);
}

void GlyphCanvas::slash() {
  cutStroke("M5.4 2.6L22 19.2", weight + 0.6);
  stroke("M3.5 3.5L20.5 20.5");
}

}  // namespace quillmeter
