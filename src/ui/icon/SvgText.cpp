#include "ui/icon/SvgText.h"

#include <fmt/format.h>

#include <QColor>
#include <QPainterPath>

namespace quillmeter {

namespace {

std::string number(double value) {
  std::string text = fmt::format("{:.2f}", value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string point(const QPainterPath& path, int index) {
  const auto element = path.elementAt(index);
  return number(element.x) + " " + number(element.y);
}

std::string data(const QPainterPath& path) {
  std::string result;
  for (int index = 0; index < path.elementCount(); ++index) {
    switch (path.elementAt(index).type) {
      case QPainterPath::MoveToElement:
        result += (index == 0 ? "M" : "ZM") + point(path, index);
        break;
      case QPainterPath::LineToElement:
        result += "L" + point(path, index);
        break;
      case QPainterPath::CurveToElement:
        result += "C" + point(path, index) + " " + point(path, index + 1) + " " + point(path, index + 2);
        index += 2;
        break;
      case QPainterPath::CurveToDataElement:
        break;
    }
  }
  return result + "Z";
}

std::string name(const QColor& color) {
  return fmt::format("#{:02x}{:02x}{:02x}", color.red(), color.green(), color.blue());
}

}  // namespace

SvgText::SvgText(double edge) : edge_(edge) {}

void SvgText::add(const QPainterPath& path, const QColor& top, const QColor& bottom, double outline) {
  std::string fill = name(top);
  if (top != bottom) {
    const int id = gradients_++;
    fill = fmt::format("url(#g{})", id);
    definitions_ += fmt::format(
        "<linearGradient id=\"g{}\" gradientUnits=\"userSpaceOnUse\" x1=\"0\" y1=\"24\" x2=\"0\" y2=\"{}\">"
        "<stop offset=\"0\" stop-color=\"{}\"/><stop offset=\"1\" stop-color=\"{}\"/></linearGradient>\n",
        id, number(edge_ - 24), name(top), name(bottom));
  }
  const std::string opacity =
      top.alpha() == 255 ? "" : fmt::format(" fill-opacity=\"{}\"", number(static_cast<double>(top.alphaF())));
  const std::string grown = outline > 0 ? fmt::format(" stroke=\"{}\" stroke-width=\"{}\" stroke-linejoin=\"round\"",
                                                      fill, number(2 * outline))
                                        : "";
  shapes_ += fmt::format("<path fill=\"{}\"{}{} d=\"{}\"/>\n", fill, opacity, grown, data(path));
}

std::string SvgText::text() const {
  const std::string size = number(edge_);
  return fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{0}\" viewBox=\"0 0 {0} {0}\">\n{1}{2}</svg>\n",
      size, definitions_.empty() ? "" : "<defs>\n" + definitions_ + "</defs>\n", shapes_);
}

}  // namespace quillmeter
