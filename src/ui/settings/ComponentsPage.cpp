#include "ui/settings/ComponentsPage.h"

#include <string>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

#include "base/L10n.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/PreferenceStore.h"
#include "ui/settings/ComponentList.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SegmentedControl.h"

namespace quillmeter {

namespace {

const std::string dashboardId = "dashboard";
const std::string menuBarId = "menuBar";

CardArrangement stored(ComponentPlacement placement, const PreferenceStore& preferences) {
  return {placement, DashboardLayoutStorage::load(preferences, placement)};
}

}  // namespace

ComponentsPage::ComponentsPage(const UiServices& services, QWidget* parent)
    : SettingsPage(services, parent),
      dashboard_(stored(ComponentPlacement::dashboard, services.preferences)),
      menuBar_(stored(ComponentPlacement::menuBar, services.preferences)),
      arrangement_(&dashboard_) {
  setObjectName("settings.components");
  buildHead();
  ComponentList::Handlers handlers;
  handlers.moveTo = [this](auto kind, auto place) { finish(arrangement_->moveTo(kind, place)); };
  handlers.moveBy = [this](auto kind, auto places) { finish(arrangement_->moveBy(kind, places)); };
  handlers.resize = [this](auto kind, auto size) { finish(arrangement_->setSize(kind, size)); };
  handlers.enable = [this](auto kind, auto on) { finish(arrangement_->setEnabled(kind, on)); };
  list_ = new ComponentList(std::move(handlers), *this, services.timers);
  list_->setObjectName("settings.components.list");
  column()->addWidget(list_);
  column()->addStretch(1);
  ComponentsPage::retranslate();
  showArrangement(false);
}

void ComponentsPage::buildHead() {
  placement_ = new SegmentedControl;
  placement_->setObjectName("settings.components.placement");
  placement_->setHandler([this](const std::string& id) { showPlacement(id); });
  reset_ = new QPushButton;
  reset_->setObjectName("settings.components.reset");
  connect(reset_, &QPushButton::clicked, this, [this] { finish(arrangement_->reset()); });
  auto* line = new QHBoxLayout;
  line->addWidget(placement_);
  line->addStretch();
  line->addWidget(reset_);
  column()->addLayout(line);
  text_ = new Paragraph(TextRole::caption, TextTone::secondary);
  column()->addWidget(text_);
}

void ComponentsPage::retranslate() {
  setPageTitle(qtText(QM_TR("组件布局")));
  placement_->setSegments({{dashboardId, qtText(QM_TR("仪表盘"))}, {menuBarId, qtText(QM_TR("菜单栏"))}});
  placement_->setChosen(arrangement_ == &dashboard_ ? dashboardId : menuBarId);
  placement_->setAccessibleName(qtText(QM_TR("布局")));
  reset_->setText(qtText(QM_TR("恢复默认")));
  text_->setText(qtText(QM_TR("拖动来排序，或选中后按 Ctrl+↑ 与 Ctrl+↓；Ctrl+Z 撤销。")));
  if (list_ != nullptr) list_->retranslate();
}

void ComponentsPage::refresh() {
  bool isChanged = false;
  for (CardArrangement* arrangement : {&dashboard_, &menuBar_}) {
    isChanged |= arrangement->adopt(DashboardLayoutStorage::load(services().preferences, arrangement->placement()));
  }
  if (isChanged) showArrangement(true);
}

void ComponentsPage::showPlacement(const std::string& id) {
  arrangement_ = id == menuBarId ? &menuBar_ : &dashboard_;
  showArrangement(false);
}

void ComponentsPage::finish(bool isChanged) {
  if (isChanged) {
    const auto encoded = DashboardLayoutStorage::encode(arrangement_->cards());
    const auto key = DashboardLayoutStorage::preferenceKey(arrangement_->placement());
    if (encoded) store(key, PreferenceData{*encoded});
  }
  showArrangement(true);
}

void ComponentsPage::showArrangement(bool isAnimated) {
  list_->show(*arrangement_, isAnimated);
  reset_->setEnabled(!arrangement_->isDefault());
}

void ComponentsPage::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Undo)) return finish(arrangement_->undo());
  if (event->matches(QKeySequence::Redo)) return finish(arrangement_->redo());
  SettingsPage::keyPressEvent(event);
}

}  // namespace quillmeter
