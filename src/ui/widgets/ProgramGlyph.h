#pragma once

#include <QImage>
#include <QWidget>

namespace quillmeter {

// The program's icon, sharp on every screen. Decoration: not read aloud.
class ProgramGlyph final : public QWidget {
 public:
  // `points` is its edge length.
  explicit ProgramGlyph(int points, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage image_;  // at the scale of the screen it was last painted on
};

}  // namespace quillmeter
