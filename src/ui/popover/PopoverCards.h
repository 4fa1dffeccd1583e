#pragma once

#include <vector>

#include <QWidget>

#include "base/Observers.h"
#include "preferences/DashboardCardConfig.h"
#include "ui/UiServices.h"

class QGridLayout;
class QLabel;

namespace quillmeter {

class Card;
class Paragraph;

// The cards of the menu-bar layout, two small ones a row and a large one across, and the active sessions below them.
// Follows changes of the layout while it is visible. Lives in the popover.
class PopoverCards : public QWidget {
 public:
  explicit PopoverCards(const UiServices& services, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void rebuild();
  void retranslate();
  std::vector<DashboardCardConfig> shownCards() const;

  const UiServices& services_;
  std::vector<DashboardCardConfig> configs_;  // as built
  std::vector<QWidget*> cards_;
  QGridLayout* grid_ = nullptr;
  Paragraph* empty_ = nullptr;
  Subscription settingChanges_;
};

}  // namespace quillmeter
