#include "metrics/DiskInfo.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "base/CheckedInt.h"
#include "core/model/NumberText.h"

namespace quillmeter {
namespace {

constexpr std::string_view whitespace = " \t\n\r\f\v";

// Takes the next piece between whitespace off the front of `rest`; empty at the end.
std::string_view takePiece(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(whitespace), rest.size()));
  const std::string_view piece = rest.substr(0, rest.find_first_of(whitespace));
  rest.remove_prefix(piece.size());
  return piece;
}

double numberOrZero(std::string_view text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() ? value : 0;
}

}  // namespace

DiskInfo::DiskInfo(VolumeCapacity& volume, LocaleConventions locale)
    : volume_(volume), formatter_(ByteCountFormatter::file(std::move(locale))) {}

std::string DiskInfo::convertByteData(const ByteCountFormatter& formatter, std::int64_t byteCount) {
  std::string text = formatter.string(byteCount);
  std::replace(text.begin(), text.end(), ',', '.');  // a decimal comma would not parse
  std::string_view rest = text;
  const std::string_view figure = takePiece(rest);
  const std::string_view unit = takePiece(rest);
  if (unit.empty()) fatalError("a byte count without a unit");
  return defaultDecimalText(numberOrZero(figure)).append(" ").append(unit);
}

void DiskInfo::update() {
  const auto volume = volume_.read();
  if (!volume) return;
  const std::int64_t used = checkedSubtract(volume->total, volume->available);
  const double share = static_cast<double>(used) * 100 / static_cast<double>(volume->total);
  percentage_ = std::round(std::min(share, 99.9) * 100) / 100;
  total_ = convertByteData(formatter_, volume->total);
  free_ = convertByteData(formatter_, volume->available);
  used_ = convertByteData(formatter_, used);
}

}  // namespace quillmeter
