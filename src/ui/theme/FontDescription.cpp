#include "ui/theme/FontDescription.h"

#include <algorithm>

#include <QString>

namespace quillmeter {
namespace {

bool isStyle(QString word) {
  static constexpr const char* styles[] = {
      "normal",         "roman",         "oblique",        "italic",       "smallcaps", "thin",         "ultralight",
      "extralight",     "light",         "semilight",      "demilight",    "book",      "regular",      "medium",
      "semibold",       "demibold",      "bold",           "ultrabold",    "extrabold", "heavy",        "black",
      "ultraheavy",     "extrablack",    "ultrablack",     "condensed",    "expanded",  "semiexpanded", "semicondensed",
      "extracondensed", "extraexpanded", "ultracondensed", "ultraexpanded"};
  word.remove(QLatin1Char('-'));
  return std::any_of(std::begin(styles), std::end(styles), [&word](const char* style) {
    return word.compare(QLatin1String(style), Qt::CaseInsensitive) == 0;
  });
}

// "11", "10.5" or, in pixels, "14px"; 0 for what is no size. Negative sizes are none.
double pointsOf(QString word) {
  constexpr double pointsInPixel = 0.75;
  const bool inPixels = word.endsWith(QLatin1String("px"));
  if (inPixels) word.chop(2);
  bool isNumber = false;
  const double size = word.toDouble(&isNumber);
  return isNumber && size > 0 ? size * (inPixels ? pointsInPixel : 1) : 0;
}

// An interface cannot be read or does not fit anywhere beyond these.
bool isSensible(double points) {
  constexpr double least = 5;
  constexpr double most = 40;
  return points >= least && points <= most;
}

}  // namespace

std::optional<FontDescription> parseFontDescription(std::string_view text) {
  constexpr std::size_t longest = 256;
  if (text.size() > longest) return std::nullopt;
  FontDescription description;
  QStringList words = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).simplified().split(' ');
  // Variations and features of the font.
  while (!words.isEmpty() && (words.last().startsWith('@') || words.last().startsWith('#'))) words.removeLast();
  if (!words.isEmpty() && pointsOf(words.last()) > 0) {
    const double points = pointsOf(words.takeLast());
    if (isSensible(points)) description.points = points;
  }
  while (!words.isEmpty() && isStyle(words.last())) words.removeLast();
  for (const QString& family : words.join(' ').split(',')) {
    if (!family.trimmed().isEmpty()) description.families.append(family.trimmed());
  }
  if (description.families.isEmpty()) return std::nullopt;
  return description;
}

}  // namespace quillmeter
