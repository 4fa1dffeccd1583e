#pragma once

#include <array>
#include <optional>

#include "agents/model/AgentTokenMetrics.h"
#include "ui/widgets/Card.h"

namespace quillmeter {

class FigureLabel;

// The figures of a range: the total, large, and beside or below it what it is made of.
class UsageTotals final : public Card {
 public:
  explicit UsageTotals(QWidget* parent);
  // Absent while nothing has been counted.
  void setMetrics(const std::optional<AgentTokenMetrics>& metrics);
  // The range's name.
  void setTitle(const QString& title);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Figure {
    QWidget* widget = nullptr;
    FigureLabel* value = nullptr;
    FigureLabel* label = nullptr;
  };
  Figure makeFigure(const char* name, bool isLarge);
  void place(bool isOneLine);
  void retranslate();

  Figure total_;
  std::array<Figure, 5> parts_;  // input, output, cached, sessions, hit rate
  QWidget* grid_;
  std::optional<bool> isOneLine_;
};

}  // namespace quillmeter
