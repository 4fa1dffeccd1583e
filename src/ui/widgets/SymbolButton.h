#pragma once

#include <string>

#include <QPushButton>

namespace quillmeter {

// A button that shows one of the program's symbols, with or without a text beside it (setText). Without a text it needs
// setDescription(), which becomes its tooltip and accessible name.
class SymbolButton : public QPushButton {
 public:
  explicit SymbolButton(std::string symbol, QWidget* parent = nullptr);
  void setSymbol(std::string symbol);
  void setDescription(const QString& description);
  // A filled ground also while the pointer is elsewhere.
  void setHasGround(bool hasGround);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  std::string symbol_;
  bool hasGround_ = false;
};

}  // namespace quillmeter
