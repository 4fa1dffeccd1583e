#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "preferences/DashboardCardConfig.h"

namespace quillmeter {

// A layout while the user edits it: moving, resizing, showing and hiding cards, each a step that can be undone. Places
// are those among the cards that are shown; hidden cards keep their place between them. A value; knows no storage.
class CardArrangement {
 public:
  static constexpr std::size_t maximumSteps = 100;  // older ones can no longer be undone

  CardArrangement(ComponentPlacement placement, std::vector<DashboardCardConfig> cards);

  ComponentPlacement placement() const { return placement_; }
  const std::vector<DashboardCardConfig>& cards() const { return cards_; }  // all, as they are stored
  std::vector<DashboardCardConfig> shown() const;
  std::vector<DashboardCardConfig> hidden() const;
  std::optional<DashboardCardConfig> card(MonitorComponentKind kind) const;
  // Absent when the card is hidden or not there.
  std::optional<std::size_t> placeOf(MonitorComponentKind kind) const;
  bool isDefault() const;

  // Each gives whether anything changed; what changes nothing is no step.
  // To a place among the shown cards, counted as if the card had been taken out first; one too far means the last.
  bool moveTo(MonitorComponentKind kind, std::size_t place);
  // By places among the shown cards; stops at the ends. A hidden card moves among all cards.
  bool moveBy(MonitorComponentKind kind, int places);
  bool setSize(MonitorComponentKind kind, DashboardCardSize size);
  // A card that is switched on appears where it stood.
  bool setEnabled(MonitorComponentKind kind, bool isEnabled);
  bool reset();

  bool canUndo() const { return !undone_.empty(); }
  bool canRedo() const { return !redone_.empty(); }
  bool undo();
  bool redo();
  // Another layout, stored by someone else or read again: the steps are forgotten unless it is the same.
  bool adopt(std::vector<DashboardCardConfig> cards);
  void forgetSteps();

 private:
  using Cards = std::vector<DashboardCardConfig>;
  bool become(Cards cards);
  DashboardCardConfig* find(Cards& cards, MonitorComponentKind kind) const;

  ComponentPlacement placement_;
  Cards cards_;
  std::vector<Cards> undone_;  // the layouts before each step, oldest first
  std::vector<Cards> redone_;
};

}  // namespace quillmeter
