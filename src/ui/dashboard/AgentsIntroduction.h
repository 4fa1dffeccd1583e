#pragma once

#include <functional>
#include <string>

#include "ui/widgets/Card.h"

class QPushButton;

namespace quillmeter {

class Paragraph;

// Stands in place of the figures while no agent is connected: what connecting does, and the button for it.
class AgentsIntroduction final : public Card {
 public:
  AgentsIntroduction(std::function<void()> act, QWidget* parent);
  // What was found on this machine, joined for reading; empty when there is nothing to connect.
  void setFound(const std::string& names);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void retranslate();

  std::string found_;
  Paragraph* text_;
  Paragraph* promise_;
  QPushButton* button_;
};

}  // namespace quillmeter
