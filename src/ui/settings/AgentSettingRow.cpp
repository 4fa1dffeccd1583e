#include "ui/settings/AgentSettingRow.h"

#include <utility>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "base/L10n.h"
#include "ui/settings/PathLabel.h"
#include "ui/theme/CapitalizedText.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

AgentSettingRow::AgentSettingRow(AgentLogProvider provider, Handlers handlers, QWidget* parent)
    : QWidget(parent), provider_(provider), handlers_(std::move(handlers)) {
  constexpr int symbolPoints = 16;
  constexpr int gap = 12;
  constexpr int nearGap = 8;
  constexpr int sideMargin = 16;
  constexpr int topMargin = 11;
  setObjectName("settings.agents." + qtText(rawValue(provider)));
  auto* symbolView = new SymbolView(std::string(symbol(provider)), {}, symbolPoints);
  symbolView->setHasGround(true);
  title_ = new FigureLabel(TextRole::body);
  state_ = new FigureLabel(TextRole::caption, TextTone::secondary);
  state_->setObjectName(objectName() + ".state");
  folder_ = new PathLabel;
  folder_->setObjectName(objectName() + ".folder");
  auto* second = new QHBoxLayout;
  second->setSpacing(nearGap);
  second->addWidget(state_);
  second->addWidget(folder_, 1);
  auto* names = new QVBoxLayout;
  names->setSpacing(2);
  names->addWidget(title_);
  names->addLayout(second);
  connect_ = addButton(".connect", handlers_.connect);
  change_ = addButton(".change", handlers_.connect);
  disconnect_ = addButton(".disconnect", handlers_.disconnect);
  switch_ = new ToggleSwitch;
  switch_->setObjectName(objectName() + ".enabled");
  connect(switch_, &QAbstractButton::clicked, this, [this](bool on) { handlers_.enable(on); });
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(sideMargin, topMargin, sideMargin, topMargin);
  layout->setSpacing(gap);
  layout->addWidget(symbolView);
  layout->addLayout(names, 1);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(nearGap);
  for (QPushButton* button : {connect_, change_, disconnect_}) buttons->addWidget(button);
  layout->addLayout(buttons);
  layout->addWidget(switch_);
  retranslate();
}

QPushButton* AgentSettingRow::addButton(const QString& name, std::function<void()> clicked) {
  auto* button = new QPushButton(this);
  button->setObjectName(objectName() + name);
  connect(button, &QPushButton::clicked, this, std::move(clicked));
  return button;
}

void AgentSettingRow::retranslate() {
  const std::string name = title(provider_);
  title_->setText(qtText(name));
  connect_->setText(qtText(QM_TR("连接…")));
  connect_->setAccessibleName(qtText(L10n::format(QM_TR("连接 %@"), {name})));
  change_->setText(qtText(QM_TR("更改…")));
  change_->setAccessibleName(qtText(L10n::format(QM_TR("更改 %@ 的文件夹"), {name})));
  disconnect_->setText(qtText(QM_TR("断开")));
  disconnect_->setAccessibleName(qtText(L10n::format(QM_TR("断开 %@"), {name})));
  switch_->setAccessibleName(qtText(L10n::format(QM_TR("统计 %@ 的用量"), {name})));
}

void AgentSettingRow::show(const State& state) {
  const bool isConnected = state.folderState == AgentFolderState::connected;
  showFolderState(state.folderState);
  state_->setMinimumWidth(state_->sizeHint().width());  // only the path may be cut short
  folder_->setPath(state.folder, state.home);
  folder_->setIsExpected(!isConnected);
  connect_->setVisible(!isConnected);
  change_->setVisible(isConnected);
  disconnect_->setVisible(isConnected);
  for (QPushButton* button : {connect_, change_, disconnect_}) button->setEnabled(state.canConnect);
  switch_->setChecked(state.isEnabled);
  switch_->setEnabled(state.canSwitch);
}

void AgentSettingRow::showFolderState(AgentFolderState state) {
  switch (state) {
    case AgentFolderState::connected:
      state_->setText(capitalizedText(QM_TR("已连接")));
      return state_->setTone(TextTone::success);
    case AgentFolderState::found:
      state_->setText(capitalizedText(QM_TR("已找到，未连接")));
      return state_->setTone(TextTone::accent);
    case AgentFolderState::notFound:
      state_->setText(capitalizedText(QM_TR("未找到")));
      return state_->setTone(TextTone::tertiary);
    case AgentFolderState::unusable:
      state_->setText(capitalizedText(QM_TR("文件夹无法读取，请重新连接")));
      return state_->setTone(TextTone::danger);
  }
}

}  // namespace quillmeter
