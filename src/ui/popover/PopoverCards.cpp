#include "ui/popover/PopoverCards.h"

#include <algorithm>
#include <string>
#include <utility>

#include <QEvent>
#include <QGridLayout>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/cards/ActiveSessionsView.h"
#include "ui/cards/MonitorCard.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {

namespace {

constexpr int gap = 10;
constexpr int columns = 2;
constexpr int mostSessions = 3;

}  // namespace

PopoverCards::PopoverCards(const UiServices& services, QWidget* parent) : QWidget(parent), services_(services) {
  setObjectName("popover.cards");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(gap);
  grid_ = new QGridLayout;
  grid_->setSpacing(gap);
  for (int index = 0; index < columns; ++index) grid_->setColumnStretch(index, 1);
  column->addLayout(grid_);
  empty_ = new Paragraph(TextRole::body, TextTone::secondary, this);
  empty_->setObjectName("popover.empty");
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setMargin(gap);
  column->addWidget(empty_);
  auto* sessions = new Card(this);
  sessions->setObjectName("popover.sessions");
  sessions->content()->addWidget(new ActiveSessionsView(services_, mostSessions));
  column->addWidget(sessions);
  column->addStretch();
  rebuild();
  retranslate();
}

std::vector<DashboardCardConfig> PopoverCards::shownCards() const {
  auto cards = DashboardLayoutStorage::load(services_.preferences, ComponentPlacement::menuBar);
  std::erase_if(cards, [](const DashboardCardConfig& card) { return !card.isEnabled; });
  return cards;
}

// A small card that finds no neighbour takes the row for itself.
void PopoverCards::rebuild() {
  configs_ = shownCards();
  for (QWidget* card : std::exchange(cards_, {})) delete card;
  int row = 0;
  for (std::size_t index = 0; index < configs_.size(); ++row) {
    const auto isSmall = [this](std::size_t place) {
      return place < configs_.size() && configs_[place].size == DashboardCardSize::small;
    };
    const int inRow = isSmall(index) && isSmall(index + 1) ? columns : 1;
    for (int place = 0; place < inRow; ++place, ++index) {
      cards_.push_back(makeMonitorCard(configs_[index], ComponentPlacement::menuBar, services_, this));
      grid_->addWidget(cards_.back(), row, place, 1, columns / inRow);
    }
  }
  empty_->setVisible(configs_.empty());
  if (!isVisible()) return;
  for (QWidget* card : cards_) card->show();
}

void PopoverCards::retranslate() {
  empty_->setText(qtText(QM_TR("没有启用任何组件，可在设置中选择。")));
}

void PopoverCards::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  settingChanges_ =
      services_.preferences.onChange([this](const std::vector<std::string>& keys, PreferenceChangeOrigin) {
        if (std::ranges::find(keys, SettingsKeys::menuBarLayout.key) == keys.end()) return;
        if (shownCards() != configs_) rebuild();
      });
}

void PopoverCards::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  settingChanges_.reset();
}

void PopoverCards::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) retranslate();
}

}  // namespace quillmeter
