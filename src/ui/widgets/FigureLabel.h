#pragma once

#include <string>

#include <QWidget>

#include "ui/theme/Typography.h"

namespace quillmeter {

struct ThemeColors;

enum class TextTone { primary, secondary, tertiary, accent, success, warning, danger };

QColor toneColor(TextTone tone, const ThemeColors& colors);

// One line of text that changes often: a figure, a name beside it. Digits keep their places, nothing is painted or laid
// out again when the text is the same, text too long for its place is elided and then shown whole in a tooltip. Its
// text is its accessible name, unless one is set with setAccessibleName().
class FigureLabel : public QWidget {
 public:
  explicit FigureLabel(TextRole role = TextRole::body, TextTone tone = TextTone::primary, QWidget* parent = nullptr);

  void setText(const QString& text);
  const QString& text() const { return text_; }
  void setTone(TextTone tone);
  // A component's colour instead of the tone; empty returns to the tone.
  void setTint(std::string hex);
  void setAlignment(Qt::Alignment alignment);
  // The width of this text is reserved, so that neighbours stand still ("100%").
  void setWidestText(const QString& text);
  // Whether its place may be narrower than its text, which is then elided. Figures (by role, or with a widest text) are
  // kept whole, other texts are not, unless told otherwise.
  void setKeepsWhole(bool keepsWhole);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // Asks for another place where the text needs one.
  void measure();

  QString text_;
  QString widest_;
  TextRole role_;
  TextTone tone_;
  std::string tint_;
  Qt::Alignment alignment_ = Qt::AlignLeft | Qt::AlignVCenter;
  bool keepsWhole_ = false;
  int neededWidth_ = 0;
};

}  // namespace quillmeter
