#pragma once

#include <QImage>
#include <QWidget>

namespace quillmeter {

// The program's icon, large. Decoration: not read aloud.
class ProgramGlyph final : public QWidget {
 public:
  explicit ProgramGlyph(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage image_;  // at the scale of the screen it was last painted on
};

}  // namespace quillmeter
