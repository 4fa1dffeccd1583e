#include "menubar/TabularText.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QFont>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

namespace quillmeter::TabularText {
namespace {

bool isDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

// Pairs of digits must not move together either.
QFont withoutKerning(QFont font) {
  font.setKerning(false);
  return font;
}

struct Digits {
  double cell = 0;
  bool areUniform = true;
};

Digits digitsOf(const QFontMetricsF& metrics) {
  const double zero = metrics.horizontalAdvance(QLatin1Char('0'));
  Digits digits{.cell = zero};
  for (char digit = '1'; digit <= '9'; ++digit) {
    const double advance = metrics.horizontalAdvance(QLatin1Char(digit));
    digits.areUniform = digits.areUniform && advance == zero;
    digits.cell = std::max(digits.cell, advance);
  }
  return digits;
}

// Calls `piece` for each digit and for each run of what is no digit, with its place from the start.
template <typename Piece>
double walk(const QString& text, const QFontMetricsF& metrics, const Digits& digits, const Piece& piece) {
  double x = 0;
  for (qsizetype start = 0; start < text.size();) {
    qsizetype end = start + 1;
    const bool digit = isDigit(text[start]);
    while (!digit && end < text.size() && !isDigit(text[end])) ++end;
    const QString part = text.mid(start, end - start);
    const double advance = metrics.horizontalAdvance(part);
    piece(part, digit ? x + (digits.cell - advance) / 2 : x);
    x += digit ? digits.cell : advance;
    start = end;
  }
  return x;
}

double widthOf(const QString& text, const QFontMetricsF& metrics, const Digits& digits) {
  if (digits.areUniform) return metrics.horizontalAdvance(text);
  return walk(text, metrics, digits, [](const QString&, double) {});
}

// With the painter's font, which does not kern.
void drawAt(QPainter& painter, const QPointF& baseline, const QString& text, const QFontMetricsF& metrics,
            const Digits& digits) {
  if (digits.areUniform) return painter.drawText(baseline, text);
  walk(text, metrics, digits, [&](const QString& part, double x) { painter.drawText(baseline + QPointF(x, 0), part); });
}

int heightOf(const QFontMetricsF& metrics) {
  return static_cast<int>(std::ceil(metrics.ascent()) + std::ceil(metrics.descent()));
}

double shareLeft(Qt::Alignment alignment) {
  if (alignment & Qt::AlignRight) return 1;
  return alignment & Qt::AlignHCenter ? 0.5 : 0;
}

double shareAbove(Qt::Alignment alignment) {
  if (alignment & Qt::AlignBottom) return 1;
  return alignment & Qt::AlignTop ? 0 : 0.5;
}

}  // namespace

// At fractional scales baseline and edge of a widget are rounded apart, which would cut a descender's last pixel off.
int height(const QFont& font) {
  constexpr int slack = 1;
  return heightOf(QFontMetricsF(font)) + slack;
}

double width(const QString& text, const QFont& font) {
  const QFontMetricsF metrics(withoutKerning(font));
  return widthOf(text, metrics, digitsOf(metrics));
}

void draw(QPainter& painter, const QRectF& rectangle, Qt::Alignment alignment, const QString& text) {
  const QFont before = painter.font();
  painter.setFont(withoutKerning(before));
  const QFontMetricsF metrics(painter.font(), painter.device());
  const Digits digits = digitsOf(metrics);
  QString shown = text;
  double needed = widthOf(shown, metrics, digits);
  // A hint that was rounded up somewhere must not cost the last letter.
  constexpr double tolerance = 0.5;
  if (needed > rectangle.width() + tolerance) {
    shown = metrics.elidedText(text, Qt::ElideRight, rectangle.width());
    needed = widthOf(shown, metrics, digits);
  }
  const double left = rectangle.left() + std::max(0.0, rectangle.width() - needed) * shareLeft(alignment);
  const double baseline = rectangle.top() +
                          std::floor((rectangle.height() - heightOf(metrics)) * shareAbove(alignment)) +
                          std::ceil(metrics.ascent());
  drawAt(painter, QPointF(left, baseline), shown, metrics, digits);
  painter.setFont(before);
}

void draw(QPainter& painter, const QPointF& baseline, const QString& text) {
  const QFont before = painter.font();
  painter.setFont(withoutKerning(before));
  const QFontMetricsF metrics(painter.font(), painter.device());
  drawAt(painter, baseline, text, metrics, digitsOf(metrics));
  painter.setFont(before);
}

}  // namespace quillmeter::TabularText
