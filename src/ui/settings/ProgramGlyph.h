#pragma once

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
};

}  // namespace quillmeter
