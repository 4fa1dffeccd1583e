#pragma once

#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class GaugeBody;

// The start-up volume: how full it is, used, free and total.
class DiskCard : public MonitorCard {
 public:
  DiskCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  void retranslate() override;

 private:
  GaugeBody* body_;
  int used_ = 0;
  int free_ = 0;
  int total_ = 0;
};

}  // namespace quillmeter
