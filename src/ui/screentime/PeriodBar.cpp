#include "ui/screentime/PeriodBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>

#include "base/L10n.h"
#include "ui/screentime/ActivityText.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {
namespace {

constexpr const char* dayId = "day";
constexpr const char* weekId = "week";

}  // namespace

PeriodBar::PeriodBar(Handlers handlers, QWidget* parent) : QWidget(parent), handlers_(std::move(handlers)) {
  kinds_ = new SegmentedControl(this);
  kinds_->setObjectName("screenTime.kind");
  kinds_->setHandler([this](const std::string& id) {
    handlers_.kindChosen(id == weekId ? ActivityPeriod::Kind::week : ActivityPeriod::Kind::day);
  });
  buildButtons();
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(6);
  row->addWidget(kinds_);
  row->addStretch(1);
  row->addWidget(today_);
  row->addSpacing(6);
  row->addWidget(previous_);
  row->addWidget(title_);
  row->addWidget(next_);
  retranslate();
}

void PeriodBar::buildButtons() {
  previous_ = new SymbolButton("chevron.left", this);
  previous_->setObjectName("screenTime.previous");
  next_ = new SymbolButton("chevron.right", this);
  next_->setObjectName("screenTime.next");
  today_ = new QPushButton(this);
  today_->setObjectName("screenTime.today");
  title_ = new FigureLabel(TextRole::strong, TextTone::primary, this);
  title_->setObjectName("screenTime.period");
  title_->setAlignment(Qt::AlignCenter);
  QObject::connect(previous_, &QAbstractButton::clicked, this, [this] { handlers_.moved(-1); });
  QObject::connect(next_, &QAbstractButton::clicked, this, [this] { handlers_.moved(1); });
  QObject::connect(today_, &QAbstractButton::clicked, this, [this] { handlers_.todayChosen(); });
}

void PeriodBar::show(const ActivityPeriod& period, const Calendar& calendar) {
  const bool kindChanged = kind_ != period.kind();
  kind_ = period.kind();
  if (kindChanged) retranslate();
  const bool isWeek = kind_ == ActivityPeriod::Kind::week;
  kinds_->setChosen(isWeek ? weekId : dayId);
  title_->setText(ActivityText::period(period.interval(calendar), isWeek, calendar));
  previous_->setEnabled(period.canMove(-1, calendar));
  next_->setEnabled(period.canMove(1, calendar));
  today_->setEnabled(!period.isCurrent(calendar));
}

void PeriodBar::retranslate() {
  const bool isWeek = kind_ == ActivityPeriod::Kind::week;
  kinds_->setSegments({{dayId, qtText(QM_TR("日"))}, {weekId, qtText(QM_TR("周"))}});
  kinds_->setAccessibleName(qtText(QM_TR("日或周")));
  previous_->setDescription(qtText(isWeek ? QM_TR("上一周") : QM_TR("前一天")));
  next_->setDescription(qtText(isWeek ? QM_TR("下一周") : QM_TR("后一天")));
  today_->setText(qtText(isWeek ? QM_TR("本周") : QM_TR("今天")));
  title_->setWidestText(qtText(isWeek ? QM_TR("12月20日 – 12月26日") : QM_TR("12月20日 周三")));
}

void PeriodBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_PageUp && previous_->isEnabled()) return handlers_.moved(-1);
  if (event->key() == Qt::Key_PageDown && next_->isEnabled()) return handlers_.moved(1);
  QWidget::keyPressEvent(event);
}

}  // namespace quillmeter
