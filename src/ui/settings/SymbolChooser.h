#pragma once

#include <functional>
#include <string_view>

#include <QWidget>

class QButtonGroup;

namespace quillmeter {

// The symbols that the menu-bar icon can take, as a grid; one is chosen. Arrow keys move the choice, each symbol is a
// radio button with a name to accessibility.
class SymbolChooser final : public QWidget {
 public:
  explicit SymbolChooser(QWidget* parent = nullptr);

  // A symbol that is not offered leaves none chosen. Does not call the handler.
  void setChosen(std::string_view symbol);
  void setHandler(std::function<void(std::string_view symbol)> handler) { handler_ = std::move(handler); }
  // Free space around the symbols.
  void setMargin(int margin) { margin_ = margin; }
  // Names in the present language.
  void retranslate();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  QButtonGroup* group_;
  int margin_ = 0;
  std::function<void(std::string_view)> handler_;
};

}  // namespace quillmeter
