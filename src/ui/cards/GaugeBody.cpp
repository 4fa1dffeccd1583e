#include "ui/cards/GaugeBody.h"

#include <QVBoxLayout>

#include "ui/cards/FactList.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/LevelBar.h"
#include "ui/widgets/RingGauge.h"
#include "ui/widgets/Sparkline.h"

namespace quillmeter {

namespace {

constexpr int ringDiameter = 92;
constexpr int wideSpacing = 24;
constexpr int leastFactsWidth = 148;
constexpr int sparklineHeight = 34;
constexpr int wideSparklineHeight = 72;
constexpr int tileColumns = 3;

}  // namespace

GaugeBody::GaugeBody(CardForm form, Graphic graphic, const QString& objectName, QWidget* parent) : QWidget(parent) {
  if (form == CardForm::wide && graphic == Graphic::level) {
    facts_ = new FactList(this, tileColumns);
  } else if (form != CardForm::compact) {
    facts_ = new FactList(this);
  }
  if (graphic == Graphic::history) {
    history_ = new Sparkline(this);
    history_->setObjectName(objectName + QStringLiteral(".history"));
  } else if (form != CardForm::wide) {
    level_ = new LevelBar(this);
  }
  if (form == CardForm::wide) {
    ring_ = new RingGauge(this);
    ring_->setDiameter(ringDiameter);
    ring_->setObjectName(objectName + QStringLiteral(".usage"));
  } else {
    figure_ = new FigureLabel(TextRole::figure, TextTone::primary, this);
    figure_->setObjectName(objectName + QStringLiteral(".usage"));
  }
  note_ = form == CardForm::wide ? new FigureLabel(TextRole::strong, TextTone::primary, this)
                                 : new FigureLabel(form == CardForm::compact ? TextRole::caption : TextRole::body,
                                                   TextTone::secondary, this);
  note_->setObjectName(objectName + QStringLiteral(".note"));
  note_->hide();
  if (form == CardForm::wide) {
    buildWide(graphic);
  } else if (form == CardForm::regular) {
    buildRegular(graphic);
  } else {
    buildCompact(graphic);
  }
}

void GaugeBody::buildWide(Graphic graphic) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(wideSpacing);
  row->addWidget(ring_, 0, Qt::AlignVCenter);
  auto* column = new QVBoxLayout;
  column->setSpacing(10);
  column->addStretch();
  auto* remark = new QHBoxLayout;
  remark->setSpacing(6);
  markPlace_ = remark;
  remark->addWidget(note_, 1);
  column->addLayout(remark);
  column->addWidget(facts_);
  column->addStretch();
  row->addLayout(column, graphic == Graphic::level ? 1 : 0);
  if (graphic == Graphic::history) {
    facts_->setMinimumWidth(leastFactsWidth);
    history_->setFixedHeight(wideSparklineHeight);
    row->addWidget(history_, 1);
  }
}

void GaugeBody::buildRegular(Graphic graphic) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  markPlace_ = row;
  row->addWidget(figure_);
  if (graphic == Graphic::history) {
    history_->setFixedHeight(sparklineHeight);
    row->addSpacing(10);
    row->addWidget(history_, 1);
  } else {
    note_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(note_, 1);
  }
  column->addLayout(row);
  if (level_ != nullptr) column->addWidget(level_);
  column->addWidget(facts_);
  column->addStretch();
}

void GaugeBody::buildCompact(Graphic graphic) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  markPlace_ = row;
  row->addWidget(figure_);
  row->addStretch();
  column->addLayout(row);
  if (graphic == Graphic::history) {
    history_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    column->addWidget(history_, 1);
    return;
  }
  column->addWidget(level_);
  column->addWidget(note_);
  column->addStretch();
}

void GaugeBody::setTint(const std::string& hex) {
  if (ring_ != nullptr) ring_->setTint(hex);
  if (level_ != nullptr) level_->setTint(hex);
  if (history_ != nullptr) history_->setTint(hex);
}

void GaugeBody::setSubject(const QString& subject) {
  subject_ = subject;
  describe();
}

void GaugeBody::setFraction(std::optional<double> fraction, const QString& text) {
  if (level_ != nullptr) level_->setFraction(fraction);
  if (ring_ != nullptr) ring_->setFraction(fraction);
  if (text == text_) return;
  text_ = text;
  if (ring_ != nullptr) {
    ring_->setText(text);
  } else {
    figure_->setText(text);
  }
  describe();
}

void GaugeBody::describe() {
  if (ring_ != nullptr) {
    ring_->setAccessibleName(subject_);
  } else {
    figure_->setAccessibleName(QStringLiteral("%1 %2").arg(subject_, text_));
  }
}

void GaugeBody::setHistory(std::span<const double> values) {
  if (history_ != nullptr) history_->setValues(values);
}

void GaugeBody::setHistoryShown(bool isShown) {
  history_->setVisible(isShown);
}

void GaugeBody::setNote(const QString& note) {
  note_->setText(note);
  note_->setVisible(!note.isEmpty());
}

void GaugeBody::setMeasurable(bool isMeasurable) {
  if (ring_ != nullptr) return;
  figure_->setVisible(isMeasurable);
  if (level_ != nullptr) level_->setVisible(isMeasurable);
  const bool isAtEnd = isMeasurable && facts_ != nullptr;
  note_->setAlignment((isAtEnd ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

// After the figure, or before the remark where the figure stands in the ring.
void GaugeBody::setMark(QWidget* mark) {
  markPlace_->insertWidget(ring_ != nullptr ? 0 : 1, mark);
}

}  // namespace quillmeter
