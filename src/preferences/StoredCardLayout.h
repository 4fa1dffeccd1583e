#pragma once

#include <functional>

#include <tl/expected.hpp>

#include "base/Observers.h"
#include "platform/PreferenceDomain.h"
#include "preferences/CardArrangement.h"

namespace quillmeter {

class PreferenceStore;

// The layout of one placement as it is stored, for a view that edits it: each step is written at once, and a layout
// that another view or program stores is taken over and told. Main thread.
class StoredCardLayout {
 public:
  // The store outlives the layout. `changed` hears every change of the cards, own steps included.
  StoredCardLayout(PreferenceStore& preferences, ComponentPlacement placement, std::function<void()> changed);
  StoredCardLayout(const StoredCardLayout&) = delete;
  StoredCardLayout& operator=(const StoredCardLayout&) = delete;

  const CardArrangement& arrangement() const { return arrangement_; }
  // Applies a step ("[](CardArrangement& cards) { return cards.moveBy(kind, 1); }") and writes the result. When it
  // cannot be written the cards are as before.
  tl::expected<void, PreferenceProblem> edit(const std::function<bool(CardArrangement&)>& step);
  // The steps done so far can no longer be undone.
  void forgetSteps() { arrangement_.forgetSteps(); }

 private:
  void reload();

  PreferenceStore& preferences_;
  CardArrangement arrangement_;
  std::function<void()> changed_;
  Subscription storedChanges_;
  bool isWriting_ = false;
};

}  // namespace quillmeter
