#include "ui/onboarding/FoundAgentRow.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "access/AgentLogFolders.h"
#include "base/L10n.h"
#include "ui/settings/PathLabel.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SymbolView.h"

namespace quillmeter {
namespace {

constexpr int symbolPoints = 18;
constexpr const char* agentTint = "A66BFF";

}  // namespace

FoundAgentRow::FoundAgentRow(AgentLogProvider provider, QWidget* parent) : QWidget(parent), provider_(provider) {
  const QString id = qtText(rawValue(provider));
  setObjectName("onboarding.agent." + id);
  buildControls();
  chosen_->setObjectName("onboarding.agent." + id + ".chosen");
  connect_->setObjectName("onboarding.agent." + id + ".connect");
  state_->setObjectName("onboarding.agent." + id + ".state");
  retranslate();
}

void FoundAgentRow::buildControls() {
  chosen_ = new QCheckBox(this);
  // A connected agent keeps the place of its box, so that the names stay below each other.
  QSizePolicy policy = chosen_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  chosen_->setSizePolicy(policy);
  auto* symbol = new SymbolView(std::string(quillmeter::symbol(provider_)), agentTint, symbolPoints, this);
  symbol->setHasGround(true);
  name_ = new FigureLabel(TextRole::body, TextTone::primary, this);
  folder_ = new PathLabel(this);
  state_ = new FigureLabel(TextRole::body, TextTone::success, this);
  connect_ = new QPushButton(this);
  auto* names = new QVBoxLayout;
  names->setSpacing(0);
  names->addWidget(name_);
  names->addWidget(folder_);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 5, 0, 5);
  row->setSpacing(12);
  row->addWidget(chosen_);
  row->addWidget(symbol);
  row->addLayout(names, 1);
  row->addWidget(state_);
  row->addWidget(connect_);
}

bool FoundAgentRow::isChosen() const {
  return !isConnected_ && chosen_->isChecked();
}

void FoundAgentRow::setChosen(bool chosen) {
  chosen_->setChecked(chosen);
}

void FoundAgentRow::setHandlers(std::function<void()> chosenChanged, std::function<void()> connect) {
  QObject::connect(chosen_, &QCheckBox::toggled, this, [chosenChanged = std::move(chosenChanged)] { chosenChanged(); });
  QObject::connect(connect_, &QPushButton::clicked, this, [connect = std::move(connect)] { connect(); });
}

void FoundAgentRow::showState(const std::optional<std::filesystem::path>& granted, const std::filesystem::path& home,
                              bool isBusy) {
  isConnected_ = granted.has_value();
  folder_->setPath(granted ? *granted : expectedFolderPath(provider_, home), home);
  chosen_->setVisible(!isConnected_);
  chosen_->setEnabled(!isBusy);
  state_->setVisible(isConnected_);
  connect_->setVisible(!isConnected_);
  connect_->setEnabled(!isBusy);
}

void FoundAgentRow::retranslate() {
  const std::string name = title(provider_);
  name_->setText(qtText(name));
  state_->setText(qtText(QM_TR("已连接")));
  connect_->setText(qtText(QM_TR("连接")));
  connect_->setAccessibleName(qtText(L10n::format(QM_TR("连接 %@"), {name})));
  chosen_->setAccessibleName(qtText(name));
}

}  // namespace quillmeter
