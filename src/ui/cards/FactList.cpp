#include "ui/cards/FactList.h"

#include <QGridLayout>

namespace quillmeter {

namespace {

constexpr int lineSpacing = 4;
constexpr int labelSpacing = 8;
constexpr int tileSpacing = 16;
constexpr int tileLineSpacing = 8;
constexpr int rowsPerTile = 3;  // label, figure, space below

}  // namespace

FactList::FactList(QWidget* parent) : QWidget(parent), grid_(new QGridLayout(this)) {
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(labelSpacing);
  grid_->setVerticalSpacing(lineSpacing);
  grid_->setColumnStretch(1, 1);
}

FactList::FactList(QWidget* parent, int columns) : QWidget(parent), grid_(new QGridLayout(this)), columns_(columns) {
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(tileSpacing);
  grid_->setVerticalSpacing(0);
  for (int column = 0; column < columns_; ++column) grid_->setColumnStretch(column, 1);
}

int FactList::add(const QString& objectName) {
  const bool isTile = columns_ > 0;
  Fact fact{new FigureLabel(isTile ? TextRole::caption : TextRole::body, TextTone::secondary, this),
            new FigureLabel(isTile ? TextRole::strong : TextRole::body, TextTone::primary, this)};
  fact.value->setObjectName(objectName);
  if (!isTile) fact.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  fact.value->setKeepsWhole(true);
  fact.label->hide();
  fact.value->hide();
  facts_.push_back(fact);
  return static_cast<int>(facts_.size()) - 1;
}

void FactList::setLabel(int fact, const QString& label) {
  Fact& changed = facts_[static_cast<std::size_t>(fact)];
  if (changed.label->text() == label) return;
  changed.label->setText(label);
  describe(changed);
}

void FactList::setValue(int fact, const QString& value) {
  Fact& changed = facts_[static_cast<std::size_t>(fact)];
  if (changed.value->text() != value) {
    changed.value->setText(value);
    describe(changed);
  }
  setShown(changed, true);
}

void FactList::setKnownValue(int fact, const QString& value) {
  if (value.isEmpty() || value == QStringLiteral("—")) {
    setShown(facts_[static_cast<std::size_t>(fact)], false);
  } else {
    setValue(fact, value);
  }
}

void FactList::describe(const Fact& fact) {
  fact.value->setAccessibleName(QStringLiteral("%1 %2").arg(fact.label->text(), fact.value->text()));
}

void FactList::setShown(Fact& fact, bool isShown) {
  if (fact.isShown == isShown) return;
  fact.isShown = isShown;
  fact.label->setVisible(isShown);
  fact.value->setVisible(isShown);
  place();
}

// What is shown moves up, so that no line is left empty.
void FactList::place() {
  int position = 0;
  for (const Fact& fact : facts_) {
    grid_->removeWidget(fact.label);
    grid_->removeWidget(fact.value);
    if (!fact.isShown) continue;
    if (columns_ == 0) {
      grid_->addWidget(fact.label, position, 0);
      grid_->addWidget(fact.value, position, 1);
    } else {
      const int row = position / columns_ * rowsPerTile;
      grid_->addWidget(fact.label, row, position % columns_);
      grid_->addWidget(fact.value, row + 1, position % columns_);
      if (row > 0) grid_->setRowMinimumHeight(row - 1, tileLineSpacing);
    }
    ++position;
  }
}

}  // namespace quillmeter
