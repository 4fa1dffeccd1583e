#include "ui/dashboard/OverviewPage.h"

#include <QHideEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "ui/AppActions.h"
#include "ui/dashboard/CardGrid.h"
#include "ui/dashboard/GridLayoutPlan.h"
#include "ui/dashboard/HiddenCardsTray.h"
#include "ui/dashboard/PageHeader.h"
#include "ui/screentime/ActivityText.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/ScrollPage.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

OverviewPage::OverviewPage(const UiServices& services, QWidget* parent)
    : QWidget(parent),
      services_(services),
      layout_(services.preferences, ComponentPlacement::dashboard, [this] { showCards(); }) {
  setObjectName(QStringLiteral("dashboard.overview"));
  header_ = new PageHeader(this);
  makeControls();
  scroll_ = new ScrollPage(PageHeader::maximumWidth, this);
  scroll_->setObjectName(QStringLiteral("dashboard.overview.scroll"));
  header_->standAbove(*scroll_);
  nothing_ = new Paragraph(TextRole::body, TextTone::secondary, scroll_);
  nothing_->setObjectName(QStringLiteral("dashboard.overview.nothing"));
  grid_ = new CardGrid(
      services, [this](const CardGrid::Step& step) { edit(step); }, scroll_);
  grid_->setObjectName(QStringLiteral("dashboard.grid"));
  tray_ = new HiddenCardsTray(
      [this](MonitorComponentKind kind) { edit([&](CardArrangement& cards) { return cards.setEnabled(kind, true); }); },
      scroll_);
  tray_->hide();
  for (QWidget* part : {static_cast<QWidget*>(nothing_), static_cast<QWidget*>(grid_), static_cast<QWidget*>(tray_)}) {
    scroll_->column()->addWidget(part);
  }
  scroll_->column()->setSpacing(GridLayoutPlan::gap);
  scroll_->column()->addStretch(1);
  retranslate();
  showCards();
}

OverviewPage::~OverviewPage() = default;

void OverviewPage::makeControls() {
  refresh_ = new SymbolButton("arrow.clockwise", this);
  refresh_->setObjectName(QStringLiteral("dashboard.overview.refresh"));
  connect(refresh_, &QAbstractButton::clicked, this, [this] { services_.store.refreshAll(); });
  undo_ = new SymbolButton("arrow.uturn.backward", this);
  undo_->setObjectName(QStringLiteral("dashboard.overview.undo"));
  connect(undo_, &QAbstractButton::clicked, this,
          [this] { edit([](CardArrangement& cards) { return cards.undo(); }); });
  reset_ = new QPushButton(this);
  reset_->setObjectName(QStringLiteral("dashboard.overview.reset"));
  connect(reset_, &QPushButton::clicked, this, [this] { edit([](CardArrangement& cards) { return cards.reset(); }); });
  edit_ = new QPushButton(this);
  edit_->setObjectName(QStringLiteral("dashboard.overview.edit"));
  connect(edit_, &QPushButton::clicked, this, [this] { setEditing(!isEditing_); });
  for (QWidget* control : {static_cast<QWidget*>(refresh_), static_cast<QWidget*>(undo_), static_cast<QWidget*>(reset_),
                           static_cast<QWidget*>(edit_)}) {
    header_->addControl(control);
  }
  undo_->hide();
  reset_->hide();
}

void OverviewPage::retranslate() {
  header_->setTitle(qtText(QM_TR("总览")));
  refresh_->setDescription(qtText(QM_TR("刷新")));
  undo_->setDescription(qtText(QM_TR("撤销")));
  reset_->setText(qtText(QM_TR("恢复默认布局")));
  edit_->setText(qtText(isEditing_ ? QM_TR("完成") : QM_TR("编辑")));
  nothing_->setText(qtText(QM_TR("没有显示任何卡片。点“编辑”，从隐藏的卡片中选择。")));
  showSubtitle();
}

void OverviewPage::showSubtitle() {
  header_->setSubtitle(isEditing_ ? qtText(QM_TR("拖动卡片排列，或用 Ctrl 加方向键移动"))
                                  : ActivityText::longDay(services_.clock.now(), services_.currentCalendar()));
}

void OverviewPage::showCards() {
  const CardArrangement& cards = layout_.arrangement();
  const auto shown = cards.shown();
  grid_->setCards(shown);
  tray_->setCards(cards.hidden());
  nothing_->setVisible(shown.empty() && !isEditing_);
  undo_->setEnabled(cards.canUndo());
  reset_->setEnabled(!cards.isDefault());
  setTabOrder(grid_->orderFocus(edit_), tray_);
}

void OverviewPage::edit(const std::function<bool(CardArrangement&)>& step) {
  if (const auto stored = layout_.edit(step); !stored) {
    showCards();
    services_.actions.preferenceFailed(stored.error());
  }
}

void OverviewPage::setEditing(bool isEditing) {
  if (isEditing == isEditing_) return;
  isEditing_ = isEditing;
  layout_.forgetSteps();
  grid_->setEditing(isEditing);
  refresh_->setVisible(!isEditing);
  undo_->setVisible(isEditing);
  reset_->setVisible(isEditing);
  edit_->setDefault(isEditing);
  tray_->setVisible(isEditing);
  retranslate();
  showCards();
}

void OverviewPage::showEvent(QShowEvent* event) {
  // Only a new day changes the line; a sample is the pulse to look.
  samples_ = services_.store.onSystemChange([this] { showSubtitle(); });
  showSubtitle();
  QWidget::showEvent(event);
}

void OverviewPage::hideEvent(QHideEvent* event) {
  samples_.reset();
  if (!event->spontaneous()) setEditing(false);
  QWidget::hideEvent(event);
}

void OverviewPage::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) retranslate();
  QWidget::changeEvent(event);
}

bool OverviewPage::editByKey(const QKeyEvent& event) {
  if (!isEditing_) return false;
  if (event.key() == Qt::Key_Escape) {
    setEditing(false);
    edit_->setFocus(Qt::OtherFocusReason);
  } else if (event.matches(QKeySequence::Undo)) {
    edit([](CardArrangement& cards) { return cards.undo(); });
  } else if (event.matches(QKeySequence::Redo) || event.keyCombination() == (Qt::CTRL | Qt::Key_Y)) {
    edit([](CardArrangement& cards) { return cards.redo(); });
  } else {
    return false;
  }
  return true;
}

}  // namespace quillmeter
