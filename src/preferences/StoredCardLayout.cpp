#include "preferences/StoredCardLayout.h"

#include <algorithm>
#include <utility>

#include "preferences/DashboardLayoutStorage.h"
#include "preferences/PreferenceStore.h"

namespace quillmeter {

StoredCardLayout::StoredCardLayout(PreferenceStore& preferences, ComponentPlacement placement,
                                   std::function<void()> changed)
    : preferences_(preferences),
      arrangement_(placement, DashboardLayoutStorage::load(preferences, placement)),
      changed_(std::move(changed)) {
  storedChanges_ = preferences.onChange([this](const std::vector<std::string>& keys, PreferenceChangeOrigin) {
    if (isWriting_) return;
    const std::string_view key = DashboardLayoutStorage::preferenceKey(arrangement_.placement());
    if (std::ranges::find(keys, key) != keys.end()) reload();
  });
}

tl::expected<void, PreferenceProblem> StoredCardLayout::edit(const std::function<bool(CardArrangement&)>& step) {
  CardArrangement edited = arrangement_;
  if (!step(edited)) return {};
  auto encoded = DashboardLayoutStorage::encode(edited.cards());
  if (!encoded) return {};
  isWriting_ = true;
  const auto written = preferences_.setData(DashboardLayoutStorage::preferenceKey(edited.placement()), *encoded);
  isWriting_ = false;
  if (!written) {
    reload();
    return written;
  }
  arrangement_ = std::move(edited);
  changed_();
  return {};
}

void StoredCardLayout::reload() {
  if (arrangement_.adopt(DashboardLayoutStorage::load(preferences_, arrangement_.placement()))) changed_();
}

}  // namespace quillmeter
