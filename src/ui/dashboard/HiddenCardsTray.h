#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QPushButton>

#include "preferences/DashboardCardConfig.h"
#include "ui/widgets/Card.h"

namespace quillmeter {

class FlowLayout;
class Paragraph;

// The button of a hidden card: its symbol, its title and a plus.
class HiddenCardButton final : public QPushButton {
 public:
  HiddenCardButton(MonitorComponentKind kind, QWidget* parent);
  MonitorComponentKind kind() const { return kind_; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  void retranslate();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const MonitorComponentKind kind_;
};

// Below the grid while the layout is edited: the cards that are not shown, to be switched on.
class HiddenCardsTray final : public Card {
 public:
  HiddenCardsTray(std::function<void(MonitorComponentKind)> show, QWidget* parent);
  void setCards(const std::vector<DashboardCardConfig>& hidden);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void retranslate();

  const std::function<void(MonitorComponentKind)> show_;
  std::vector<HiddenCardButton*> buttons_;
  FlowLayout* flow_;
  Paragraph* nothing_;
};

}  // namespace quillmeter
