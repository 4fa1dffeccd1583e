#pragma once

#include <string>

#include <QAbstractButton>

namespace quillmeter {

// A button that shows one of the program's symbols, with or without a text beside it (setText). Without a text it needs
// setDescription(), which becomes its tooltip and accessible name.
class SymbolButton : public QAbstractButton {
 public:
  explicit SymbolButton(std::string symbol, QWidget* parent = nullptr);
  void setSymbol(std::string symbol);
  void setDescription(const QString& description);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  std::string symbol_;
};

}  // namespace quillmeter
