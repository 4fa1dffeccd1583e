#include "ui/dashboard/CardSlot.h"

#include <algorithm>
#include <utility>

#include <QEvent>

#include "ui/cards/MonitorCard.h"

namespace quillmeter {

CardSlot::CardSlot(const DashboardCardConfig& config, const UiServices& services, QWidget* parent)
    : QWidget(parent), services_(services), config_(config) {
  makeCard();
}

void CardSlot::makeCard() {
  card_ = makeMonitorCard(config_, ComponentPlacement::dashboard, services_, this);
  card_->setGeometry(rect());
  card_->setEnabled(handles_ == nullptr);
  card_->lower();
  card_->show();
}

void CardSlot::setSize(DashboardCardSize size) {
  if (size == config_.size) return;
  config_.size = size;
  // It may be the one whose event leads here.
  card_->hide();
  std::exchange(card_, nullptr)->deleteLater();
  makeCard();
}

int CardSlot::wantedHeight(int width) const {
  card_->ensurePolished();
  const int height = card_->hasHeightForWidth() ? card_->heightForWidth(width) : card_->sizeHint().height();
  return std::max(height, card_->minimumSizeHint().height());
}

void CardSlot::startEditing(CardHandles::Handlers handlers) {
  if (handles_ != nullptr) return;
  handles_ = new CardHandles(config_.kind, std::move(handlers), this);
  handles_->setGeometry(rect());
  handles_->show();
  // The card's own controls are out of reach of the keyboard, too.
  card_->setEnabled(false);
}

void CardSlot::endEditing() {
  if (handles_ == nullptr) return;
  handles_->release();
  handles_->hide();
  std::exchange(handles_, nullptr)->deleteLater();
  card_->setEnabled(true);
}

bool CardSlot::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) updateGeometry();
  return QWidget::event(event);
}

void CardSlot::resizeEvent(QResizeEvent*) {
  card_->setGeometry(rect());
  if (handles_ != nullptr) handles_->setGeometry(rect());
}

}  // namespace quillmeter
