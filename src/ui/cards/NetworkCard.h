#pragma once

#include "ui/cards/MonitorCard.h"

class QGridLayout;

namespace quillmeter {

class FactList;
class FigureLabel;
class Sparkline;

// Network throughput in both directions, their course together, and the machine's address.
class NetworkCard : public MonitorCard {
 public:
  NetworkCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  void retranslate() override;

 private:
  struct Rate {
    FigureLabel* label = nullptr;
    FigureLabel* value = nullptr;
  };
  Rate addRate(QGridLayout* grid, const char* arrow, const char* part);
  void show(const Rate& rate, const QString& name, const std::string& value);

  Rate down_;
  Rate up_;
  Sparkline* history_;
  FactList* facts_ = nullptr;
  int address_ = 0;
};

}  // namespace quillmeter
