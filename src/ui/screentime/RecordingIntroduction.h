#pragma once

#include <functional>
#include <vector>

#include "ui/widgets/Card.h"

class QPushButton;

namespace quillmeter {

class Paragraph;

// What a user reads before recording was ever switched on: what is recorded, where it is kept, for how long, and what
// never is.
class RecordingIntroduction : public Card {
 public:
  explicit RecordingIntroduction(QWidget* parent = nullptr);
  void setBegun(std::function<void()> begun) { begun_ = std::move(begun); }
  void setCanBegin(bool can);
  void retranslate();

 private:
  Paragraph* lead_ = nullptr;
  std::vector<Paragraph*> facts_;
  QPushButton* begin_ = nullptr;
  std::function<void()> begun_;
};

}  // namespace quillmeter
