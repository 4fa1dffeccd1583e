#pragma once

#include <string>

#include <QWidget>

#include "ui/theme/Typography.h"

namespace quillmeter {

enum class TextTone { primary, secondary, tertiary, accent, success, warning, danger };

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

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QString text_;
  QString widest_;
  TextRole role_;
  TextTone tone_;
  std::string tint_;
  Qt::Alignment alignment_ = Qt::AlignLeft | Qt::AlignVCenter;
};

}  // namespace quillmeter
