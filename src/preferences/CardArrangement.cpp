#include "preferences/CardArrangement.h"

#include <algorithm>
#include <utility>

#include "preferences/DashboardLayoutStorage.h"

namespace quillmeter {

namespace {

using Cards = std::vector<DashboardCardConfig>;

auto positionOf(const Cards& cards, MonitorComponentKind kind) {
  return std::ranges::find(cards, kind, &DashboardCardConfig::kind);
}

Cards withSwitch(const Cards& cards, bool isEnabled) {
  Cards chosen;
  std::ranges::copy_if(cards, std::back_inserter(chosen),
                       [&](const DashboardCardConfig& card) { return card.isEnabled == isEnabled; });
  return chosen;
}

// `card` before the shown card at `place`; behind the last shown one when there is none.
void insertAtPlace(Cards& cards, DashboardCardConfig card, std::size_t place) {
  std::size_t index = 0;
  std::size_t afterLastShown = 0;
  for (std::size_t seen = 0; index < cards.size(); ++index) {
    if (!cards[index].isEnabled) continue;
    if (seen++ == place) break;
    afterLastShown = index + 1;
  }
  if (index == cards.size()) index = afterLastShown;
  cards.insert(cards.begin() + static_cast<std::ptrdiff_t>(index), card);
}

}  // namespace

CardArrangement::CardArrangement(ComponentPlacement placement, std::vector<DashboardCardConfig> cards)
    : placement_(placement), cards_(std::move(cards)) {}

std::vector<DashboardCardConfig> CardArrangement::shown() const {
  return withSwitch(cards_, true);
}

std::vector<DashboardCardConfig> CardArrangement::hidden() const {
  return withSwitch(cards_, false);
}

std::optional<DashboardCardConfig> CardArrangement::card(MonitorComponentKind kind) const {
  const auto found = positionOf(cards_, kind);
  return found == cards_.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::size_t> CardArrangement::placeOf(MonitorComponentKind kind) const {
  std::size_t place = 0;
  for (const DashboardCardConfig& card : cards_) {
    if (!card.isEnabled) continue;
    if (card.kind == kind) return place;
    ++place;
  }
  return std::nullopt;
}

bool CardArrangement::isDefault() const {
  return cards_ == DashboardLayoutStorage::defaultLayout(placement_);
}

bool CardArrangement::moveTo(MonitorComponentKind kind, std::size_t place) {
  const auto present = placeOf(kind);
  if (!present || *present == place) return false;
  Cards cards = cards_;
  const auto position = positionOf(cards, kind);
  const DashboardCardConfig card = *position;
  cards.erase(position);
  insertAtPlace(cards, card, place);
  return become(std::move(cards));
}

bool CardArrangement::moveBy(MonitorComponentKind kind, int places) {
  if (const auto present = placeOf(kind)) {
    const auto last = static_cast<std::ptrdiff_t>(shown().size()) - 1;
    const auto place = std::clamp(static_cast<std::ptrdiff_t>(*present) + places, std::ptrdiff_t{0}, last);
    return moveTo(kind, static_cast<std::size_t>(place));
  }
  Cards cards = cards_;
  const auto position = positionOf(cards, kind);
  if (position == cards.end()) return false;
  const std::ptrdiff_t index = position - cards.cbegin();
  const auto last = static_cast<std::ptrdiff_t>(cards.size()) - 1;
  const DashboardCardConfig card = *position;
  cards.erase(position);
  cards.insert(cards.begin() + std::clamp(index + places, std::ptrdiff_t{0}, last), card);
  return become(std::move(cards));
}

bool CardArrangement::setSize(MonitorComponentKind kind, DashboardCardSize size) {
  Cards cards = cards_;
  if (DashboardCardConfig* card = find(cards, kind)) card->size = size;
  return become(std::move(cards));
}

bool CardArrangement::setEnabled(MonitorComponentKind kind, bool isEnabled) {
  Cards cards = cards_;
  if (DashboardCardConfig* card = find(cards, kind)) card->isEnabled = isEnabled;
  return become(std::move(cards));
}

bool CardArrangement::reset() {
  return become(DashboardLayoutStorage::defaultLayout(placement_));
}

bool CardArrangement::undo() {
  if (undone_.empty()) return false;
  redone_.push_back(std::exchange(cards_, std::move(undone_.back())));
  undone_.pop_back();
  return true;
}

bool CardArrangement::redo() {
  if (redone_.empty()) return false;
  undone_.push_back(std::exchange(cards_, std::move(redone_.back())));
  redone_.pop_back();
  return true;
}

bool CardArrangement::adopt(std::vector<DashboardCardConfig> cards) {
  if (cards == cards_) return false;
  cards_ = std::move(cards);
  forgetSteps();
  return true;
}

void CardArrangement::forgetSteps() {
  undone_.clear();
  redone_.clear();
}

bool CardArrangement::become(Cards cards) {
  if (cards == cards_) return false;
  undone_.push_back(std::exchange(cards_, std::move(cards)));
  if (undone_.size() > maximumSteps) undone_.erase(undone_.begin());
  redone_.clear();
  return true;
}

DashboardCardConfig* CardArrangement::find(Cards& cards, MonitorComponentKind kind) const {
  const auto found = std::ranges::find(cards, kind, &DashboardCardConfig::kind);
  return found == cards.end() ? nullptr : &*found;
}

}  // namespace quillmeter
