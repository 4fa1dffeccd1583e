#pragma once

#include <QWidget>

#include "preferences/DashboardCardConfig.h"
#include "ui/UiServices.h"
#include "ui/dashboard/CardHandles.h"

namespace quillmeter {

class MonitorCard;

// One place of the grid: a card and, while the layout is edited, its handles over it. The card is made anew when its
// size changes.
class CardSlot : public QWidget {
 public:
  CardSlot(const DashboardCardConfig& config, const UiServices& services, QWidget* parent);

  MonitorComponentKind kind() const { return config_.kind; }
  DashboardCardSize size() const { return config_.size; }
  void setSize(DashboardCardSize size);
  int wantedHeight(int width) const;

  void startEditing(CardHandles::Handlers handlers);
  void endEditing();
  CardHandles* handles() const { return handles_; }

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void makeCard();

  const UiServices& services_;
  DashboardCardConfig config_;
  MonitorCard* card_ = nullptr;
  CardHandles* handles_ = nullptr;
};

}  // namespace quillmeter
