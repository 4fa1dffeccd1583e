#pragma once

#include <string>

#include <QWidget>

namespace quillmeter {

// One of the program's symbols in a tint, on a faint rounded ground where wanted. Decoration: not read aloud.
class SymbolView : public QWidget {
 public:
  SymbolView(std::string symbol, std::string tint, int points, QWidget* parent = nullptr);
  void setSymbol(std::string symbol);
  void setTint(std::string hex);  // empty: secondary text
  void setHasGround(bool hasGround);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string symbol_;
  std::string tint_;
  int points_;
  bool hasGround_ = false;
};

}  // namespace quillmeter
