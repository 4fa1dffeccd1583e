#include "screenshots/IndexedImage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace quillmeter {
namespace {

constexpr std::size_t mostColors = 256;
constexpr std::array<int, 3> channels = {16, 8, 0};  // as shifts: red, green, blue

struct CountedColor {
  QRgb color = 0;
  std::int64_t pixels = 0;
};

int channelOf(QRgb color, int shift) {
  return static_cast<int>(color >> shift & 0xFFU);
}

// Colours that will become one.
struct Box {
  std::vector<CountedColor> colors;
  int widestChannel = 0;
  double error = 0;  // how much is lost when this box becomes one colour

  explicit Box(std::vector<CountedColor> content) : colors(std::move(content)) {
    double widest = -1;
    for (const int shift : channels) {
      double count = 0;
      double sum = 0;
      double squares = 0;
      for (const auto& [color, pixels] : colors) {
        const double weight = static_cast<double>(pixels);
        const double value = channelOf(color, shift);
        count += weight;
        sum += weight * value;
        squares += weight * value * value;
      }
      const double spread = squares - sum * sum / count;
      error += spread;
      if (spread > widest) {
        widest = spread;
        widestChannel = shift;
      }
    }
  }

  QRgb mean() const {
    std::int64_t count = 0;
    std::array<std::int64_t, 3> sums{};
    for (const auto& [color, pixels] : colors) {
      count += pixels;
      for (std::size_t index = 0; index < channels.size(); ++index) {
        sums[index] += pixels * channelOf(color, channels[index]);
      }
    }
    const auto value = [&](std::size_t index) { return static_cast<int>((sums[index] + count / 2) / count); };
    return qRgb(value(0), value(1), value(2));
  }

  // Leaves the lower half of the widest channel here and gives the other.
  Box split() {
    const int shift = widestChannel;
    std::ranges::sort(colors, {}, [shift](const CountedColor& counted) {
      return std::pair(channelOf(counted.color, shift), counted.color);
    });
    const int middle = (channelOf(colors.front().color, shift) + channelOf(colors.back().color, shift)) / 2;
    auto upper = std::ranges::find_if(
        colors, [=](const CountedColor& counted) { return channelOf(counted.color, shift) > middle; });
    Box other({upper, colors.end()});
    colors.erase(upper, colors.end());
    *this = Box(std::move(colors));
    return other;
  }
};

std::vector<CountedColor> colorsOf(const QImage& image) {
  std::unordered_map<QRgb, std::int64_t> counts;
  for (int y = 0; y < image.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) ++counts[line[x]];
  }
  std::vector<CountedColor> colors;
  colors.reserve(counts.size());
  for (const auto& [color, pixels] : counts) colors.push_back({color, pixels});
  std::ranges::sort(colors, {}, &CountedColor::color);
  return colors;
}

}  // namespace

QImage indexedImage(const QImage& image) {
  const QImage source = image.convertToFormat(QImage::Format_RGB32);
  std::vector<Box> boxes{Box(colorsOf(source))};
  while (boxes.size() < mostColors) {
    const auto worst = std::ranges::max_element(boxes, {}, &Box::error);
    if (worst->colors.size() < 2) break;
    Box other = worst->split();
    boxes.push_back(std::move(other));
  }
  QList<QRgb> table;
  std::unordered_map<QRgb, uchar> indexes;
  for (const Box& box : boxes) {
    for (const auto& [color, pixels] : box.colors) indexes[color] = static_cast<uchar>(table.size());
    table.append(box.mean());
  }
  QImage result(source.size(), QImage::Format_Indexed8);
  result.setColorTable(table);
  for (int y = 0; y < source.height(); ++y) {
    const auto* from = reinterpret_cast<const QRgb*>(source.constScanLine(y));
    uchar* to = result.scanLine(y);
    for (int x = 0; x < source.width(); ++x) to[x] = indexes[from[x]];
  }
  return result;
}

}  // namespace quillmeter
