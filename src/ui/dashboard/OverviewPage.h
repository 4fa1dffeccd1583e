#pragma once

#include <functional>

#include <QWidget>

#include "base/Observers.h"
#include "preferences/StoredCardLayout.h"
#include "ui/UiServices.h"

class QPushButton;

namespace quillmeter {

class CardGrid;
class HiddenCardsTray;
class PageHeader;
class Paragraph;
class ScrollPage;
class SymbolButton;

// The cards of the dashboard's layout, and the editing of that layout: moving, resizing, hiding and showing cards, all
// of it stored at once and undone by Ctrl+Z until the editing ends.
class OverviewPage : public QWidget {
 public:
  explicit OverviewPage(const UiServices& services, QWidget* parent = nullptr);
  ~OverviewPage() override;
  // Escape, undo and redo while the layout is edited, wherever in the window the focus is; false for any other key.
  bool editByKey(const QKeyEvent& event);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void setEditing(bool isEditing);
  void makeControls();
  void retranslate();
  void showCards();
  void showSubtitle();
  void edit(const std::function<bool(CardArrangement&)>& step);

  const UiServices& services_;
  StoredCardLayout layout_;
  PageHeader* header_ = nullptr;
  SymbolButton* refresh_ = nullptr;
  SymbolButton* undo_ = nullptr;
  QPushButton* reset_ = nullptr;
  QPushButton* edit_ = nullptr;
  ScrollPage* scroll_ = nullptr;
  Paragraph* nothing_ = nullptr;
  CardGrid* grid_ = nullptr;
  HiddenCardsTray* tray_ = nullptr;
  Subscription samples_;
  bool isEditing_ = false;
};

}  // namespace quillmeter
