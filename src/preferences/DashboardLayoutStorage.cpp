#include "preferences/DashboardLayoutStorage.h"

#include <algorithm>
#include <array>
#include <utility>

#include <nlohmann/json.hpp>

#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::DashboardLayoutStorage {

namespace {

using Json = nlohmann::json;
using Kind = MonitorComponentKind;

constexpr auto small = DashboardCardSize::small;
constexpr auto large = DashboardCardSize::large;
constexpr std::string_view retiredKind = "quickStatus";
constexpr std::array<Kind, 2> successorsOfRetiredKind = {Kind::wifi, Kind::audio};
constexpr std::array<ComponentPlacement, 2> placements = {ComponentPlacement::dashboard, ComponentPlacement::menuBar};

// A card as it is stored: its kind is any text, so that a list of a later version still decodes.
struct StoredCard {
  std::string kind;
  DashboardCardSize size = small;
  bool isEnabled = true;
};

std::optional<StoredCard> storedCard(const Json& element) {
  if (!element.is_object()) return std::nullopt;
  const auto kind = element.find("kind");
  const auto size = element.find("size");
  const auto isEnabled = element.find("isEnabled");
  if (kind == element.end() || size == element.end() || isEnabled == element.end()) return std::nullopt;
  if (!kind->is_string() || !isEnabled->is_boolean() || (*size != "small" && *size != "large")) return std::nullopt;
  return StoredCard{kind->get<std::string>(), *size == "large" ? large : small, isEnabled->get<bool>()};
}

// Absent when any element is no card.
std::optional<std::vector<StoredCard>> decode(std::string_view data) {
  if (data.size() > maximumLayoutBytes) return std::nullopt;
  const Json list = Json::parse(data, nullptr, false);
  if (!list.is_array()) return std::nullopt;
  std::vector<StoredCard> cards;
  for (const Json& element : list) {
    auto card = storedCard(element);
    if (!card) return std::nullopt;
    cards.push_back(std::move(*card));
  }
  return cards;
}

// Absent when a kind is not UTF-8, which no decoded one is.
std::optional<std::string> encodeStored(const std::vector<StoredCard>& cards) {
  std::string text = "[";
  for (const StoredCard& card : cards) {
    if (text.size() > 1) text += ',';
    text += R"({"kind":)";
    try {
      text += Json(card.kind).dump();
    } catch (const Json::exception&) {
      return std::nullopt;
    }
    text += card.size == large ? R"(,"size":"large","isEnabled":)" : R"(,"size":"small","isEnabled":)";
    text += card.isEnabled ? "true}" : "false}";
  }
  text += ']';
  return text;
}

bool holdsKind(const std::vector<DashboardCardConfig>& cards, Kind kind) {
  return std::ranges::find(cards, kind, &DashboardCardConfig::kind) != cards.end();
}

bool holdsKind(const std::vector<StoredCard>& cards, std::string_view kind) {
  return std::ranges::find(cards, kind, &StoredCard::kind) != cards.end();
}

void appendIfMissing(std::vector<DashboardCardConfig>& cards, DashboardCardConfig card) {
  if (!holdsKind(cards, card.kind)) cards.push_back(card);
}

// The new cards take the retired one's size and switch, in both placements. The old switch of the panel says nothing
// more: it hid a panel that is gone, while the card's own switch is what the user last saw in the list.
std::vector<StoredCard> withoutRetiredCard(const std::vector<StoredCard>& cards) {
  std::vector<StoredCard> rebuilt;
  for (const StoredCard& card : cards) {
    if (card.kind != retiredKind) {
      rebuilt.push_back(card);
      continue;
    }
    for (const Kind kind : successorsOfRetiredKind) {
      // A card of its own, wherever it stands, is the user's choice for that kind.
      if (holdsKind(cards, rawValue(kind)) || holdsKind(rebuilt, rawValue(kind))) continue;
      rebuilt.push_back({std::string(rawValue(kind)), card.size, card.isEnabled});
    }
  }
  return rebuilt;
}

}  // namespace

std::string_view preferenceKey(ComponentPlacement placement) {
  return placement == ComponentPlacement::dashboard ? SettingsKeys::dashboardLayout.key
                                                    : SettingsKeys::menuBarLayout.key;
}

std::vector<DashboardCardConfig> defaultLayout(ComponentPlacement placement) {
  if (placement == ComponentPlacement::dashboard) {
    return {{Kind::agentTokens, large, true}, {Kind::agentLimits, large, true}, {Kind::cpu, small, true},
            {Kind::memory, small, true},      {Kind::battery, small, true},     {Kind::disk, small, true},
            {Kind::network, large, true},     {Kind::fan, small, true},         {Kind::wifi, small, false},
            {Kind::audio, small, false}};
  }
  return {{Kind::agentTokens, large, true}, {Kind::cpu, small, true},         {Kind::memory, small, true},
          {Kind::battery, small, true},     {Kind::agentLimits, small, true}, {Kind::disk, large, false},
          {Kind::network, large, false},    {Kind::fan, small, false},        {Kind::wifi, small, false},
          {Kind::audio, small, false}};
}

std::vector<DashboardCardConfig> load(const std::optional<std::string>& data, ComponentPlacement placement) {
  const auto stored = data ? decode(*data) : std::nullopt;
  if (!stored || stored->empty()) return defaultLayout(placement);
  std::vector<DashboardCardConfig> cards;
  for (const StoredCard& card : *stored) {
    if (card.kind == retiredKind) {
      for (const Kind kind : successorsOfRetiredKind) appendIfMissing(cards, {kind, card.size, card.isEnabled});
    } else if (const auto kind = monitorComponentKindFromRawValue(card.kind)) {
      appendIfMissing(cards, {*kind, card.size, card.isEnabled});
    }
  }
  for (const DashboardCardConfig& card : defaultLayout(placement)) appendIfMissing(cards, card);
  return cards;
}

std::vector<DashboardCardConfig> load(const PreferenceStore& store, ComponentPlacement placement) {
  return load(store.data(preferenceKey(placement)), placement);
}

std::optional<std::string> encode(const std::vector<DashboardCardConfig>& cards) {
  std::vector<StoredCard> stored;
  for (const DashboardCardConfig& card : cards)
    stored.push_back({std::string(rawValue(card.kind)), card.size, card.isEnabled});
  return encodeStored(stored);
}

bool decodes(std::string_view data) {
  const auto stored = decode(data);
  return stored && !stored->empty();
}

void migrateLegacyQuickStatus(PreferenceStore& store) {
  for (const ComponentPlacement placement : placements) {
    const std::string_view key = preferenceKey(placement);
    const auto data = store.data(key);
    const auto cards = data ? decode(*data) : std::nullopt;
    if (!cards || !holdsKind(*cards, retiredKind)) continue;
    // Where nothing can be written, loading expands the retired card each time.
    if (auto encoded = encodeStored(withoutRetiredCard(*cards))) (void)store.setData(key, std::move(*encoded));
  }
  const std::string_view oldSwitch = SettingsKeys::quickStatusPanel.key;
  if (store.domain().contains(oldSwitch)) (void)store.remove(oldSwitch);
}

bool hasConnectionOrAudioCards(const PreferenceStore& store) {
  return std::ranges::any_of(placements, [&](ComponentPlacement placement) {
    return std::ranges::any_of(load(store, placement), [](const DashboardCardConfig& card) {
      return card.isEnabled && (card.kind == Kind::wifi || card.kind == Kind::audio);
    });
  });
}

}  // namespace quillmeter::DashboardLayoutStorage
