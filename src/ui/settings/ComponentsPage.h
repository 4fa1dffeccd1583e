#pragma once

#include "preferences/CardArrangement.h"
#include "ui/settings/SettingsPage.h"

class QPushButton;

namespace quillmeter {

class ComponentList;

// Which components the dashboard and the menu bar's panel show, in which order and size. Every step is stored at once
// and can be undone while the page is open.
class ComponentsPage final : public SettingsPage {
 public:
  ComponentsPage(const UiServices& services, QWidget* parent);

 protected:
  void retranslate() override;
  void refresh() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void buildHead();
  void showPlacement(const std::string& id);
  // Stores what a step made of the layout.
  void finish(bool isChanged);
  void showArrangement(bool isAnimated);

  CardArrangement dashboard_;
  CardArrangement menuBar_;
  CardArrangement* arrangement_;  // the one that is shown
  SegmentedControl* placement_ = nullptr;
  Paragraph* text_ = nullptr;
  QPushButton* reset_ = nullptr;
  ComponentList* list_ = nullptr;
};

}  // namespace quillmeter
