#pragma once

#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class GaugeBody;

// Processor load: the whole, what users' and the system's own work take of it, and its course.
class CpuCard : public MonitorCard {
 public:
  CpuCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  void retranslate() override;

 private:
  GaugeBody* body_;
  int user_ = 0;
  int system_ = 0;
};

}  // namespace quillmeter
