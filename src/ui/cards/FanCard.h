#pragma once

#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class FactList;
class FigureLabel;
class LevelSteps;
class Paragraph;

// How warm the machine runs, in the system's own four levels; fan speed and temperature where they are known.
class FanCard : public MonitorCard {
 public:
  FanCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  void retranslate() override;

 private:
  void buildFacts();

  FigureLabel* state_;
  LevelSteps* steps_;
  Paragraph* note_;
  FactList* facts_ = nullptr;
  int temperature_ = 0;
  int speed_ = 0;
};

}  // namespace quillmeter
