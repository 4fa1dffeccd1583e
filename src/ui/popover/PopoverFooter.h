#pragma once

#include <vector>

#include <QWidget>

#include "base/Observers.h"
#include "ui/UiServices.h"

namespace quillmeter {

class FigureLabel;
class Paragraph;
class SymbolButton;

// The popover's last lines: what there is to say about the last scan, how old it is, and the ways out. Hears changes
// while it is visible. Lives in the popover.
class PopoverFooter : public QWidget {
 public:
  explicit PopoverFooter(const UiServices& services, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void buildButtons();
  void refresh();
  void retranslate();

  const UiServices& services_;
  Paragraph* message_ = nullptr;
  FigureLabel* age_ = nullptr;
  SymbolButton* refresh_ = nullptr;
  SymbolButton* settings_ = nullptr;
  SymbolButton* dashboard_ = nullptr;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmeter
