#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "preferences/DashboardCardConfig.h"

namespace quillmeter {

class PreferenceStore;

// How the two layouts are stored: a JSON array of {"kind", "size", "isEnabled"} in display order, as data under the key
// of the placement. Stateless.
namespace DashboardLayoutStorage {

inline constexpr std::size_t maximumLayoutBytes = 1'048'576;

std::string_view preferenceKey(ComponentPlacement placement);
std::vector<DashboardCardConfig> defaultLayout(ComponentPlacement placement);

// The stored cards, repaired: each kind once, the first of two wins, unknown kinds dropped, missing ones added as the
// default has them. The default layout for data that are absent, empty or no layout.
std::vector<DashboardCardConfig> load(const std::optional<std::string>& data, ComponentPlacement placement);
std::vector<DashboardCardConfig> load(const PreferenceStore& store, ComponentPlacement placement);
std::optional<std::string> encode(const std::vector<DashboardCardConfig>& cards);
// Whether `data` is a layout that load() does not replace by the default.
bool decodes(std::string_view data);

// Replaces the retired quick-status card of older versions in both stored layouts and removes its old switch. Once a
// launch, before defaults are registered; writes nothing when there is nothing to replace.
void migrateLegacyQuickStatus(PreferenceStore& store);

// Whether a layout shows a Wi-Fi or an audio card, so that quick status has to be sampled.
bool hasConnectionOrAudioCards(const PreferenceStore& store);

}  // namespace DashboardLayoutStorage

}  // namespace quillmeter
