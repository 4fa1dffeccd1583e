#include "ui/widgets/Chooser.h"

#include <algorithm>

#include <QWheelEvent>

namespace quillmeter {

Chooser::Chooser(QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizeAdjustPolicy(QComboBox::AdjustToContents);
  connect(this, &QComboBox::activated, this, [this](int index) {
    // A copy: the handler may set other choices.
    const std::string id = choices_[static_cast<std::size_t>(index)].id;
    if (id == chosen_) return;
    chosen_ = id;
    if (handler_) handler_(id);
  });
}

void Chooser::setChoices(std::vector<Choice> choices) {
  if (choices == choices_) return;
  choices_ = std::move(choices);
  clear();
  for (const Choice& choice : choices_) addItem(choice.title);
  setChosen(chosen_);
}

void Chooser::setChosen(const std::string& id) {
  chosen_ = id;
  const auto found =
      std::find_if(choices_.begin(), choices_.end(), [&id](const Choice& choice) { return choice.id == id; });
  setCurrentIndex(found == choices_.end() ? -1 : static_cast<int>(found - choices_.begin()));
}

void Chooser::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace quillmeter
