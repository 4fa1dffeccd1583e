#include "preferences/DashboardLayoutStorage.h"

#include <gmock/gmock.h>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/PreferenceStore.h"

namespace quillmeter {

void PrintTo(const DashboardCardConfig& card, std::ostream* out) {
  *out << rawValue(card.kind) << (card.size == DashboardCardSize::large ? " large" : " small")
       << (card.isEnabled ? " on" : " off");
}

namespace {

using namespace DashboardLayoutStorage;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = MonitorComponentKind;

constexpr auto small = DashboardCardSize::small;
constexpr auto large = DashboardCardSize::large;
constexpr const char* dashboardKey = "settings.dashboardLayout.v2";
constexpr const char* menuBarKey = "settings.menuBarLayout.v2";

std::string card(const std::string& kind, const std::string& size = "small", bool isEnabled = true) {
  return R"({"kind":")" + kind + R"(","size":")" + size + R"(","isEnabled":)" + (isEnabled ? "true" : "false") + "}";
}

std::vector<Kind> kindsOf(const std::vector<DashboardCardConfig>& cards) {
  std::vector<Kind> kinds;
  for (const DashboardCardConfig& config : cards) kinds.push_back(config.kind);
  return kinds;
}

TEST(DashboardLayout, theDefaultsShowEightAndFiveCards) {
  const auto enabled = [](const std::vector<DashboardCardConfig>& cards) {
    return std::ranges::count(cards, true, &DashboardCardConfig::isEnabled);
  };
  const auto dashboard = load(std::nullopt, ComponentPlacement::dashboard);
  EXPECT_EQ(enabled(dashboard), 8);
  EXPECT_EQ(dashboard[0], (DashboardCardConfig{Kind::agentTokens, large, true}));
  EXPECT_EQ(dashboard[1], (DashboardCardConfig{Kind::agentLimits, large, true}));
  const auto menuBar = load(std::nullopt, ComponentPlacement::menuBar);
  EXPECT_EQ(enabled(menuBar), 5);
  EXPECT_EQ(menuBar[4], (DashboardCardConfig{Kind::agentLimits, small, true}));
  EXPECT_EQ(menuBar[6], (DashboardCardConfig{Kind::network, large, false}));
  for (const ComponentPlacement placement : {ComponentPlacement::dashboard, ComponentPlacement::menuBar}) {
    EXPECT_THAT(kindsOf(defaultLayout(placement)), testing::UnorderedElementsAreArray(allMonitorComponentKinds));
    EXPECT_EQ(load(encode(defaultLayout(placement)), placement), defaultLayout(placement));
  }
}

TEST(DashboardLayout, aStoredListIsRepairedAndCompleted) {
  struct Case {
    const char* what;
    std::string stored;
    std::vector<DashboardCardConfig> beginning;
  };
  const std::vector<Case> cases = {
      {"one card, the rest as the default has it",
       "[" + card("memory", "large", false) + "]",
       {{Kind::memory, large, false},
        {Kind::agentTokens, large, true},
        {Kind::agentLimits, large, true},
        {Kind::cpu, small, true},
        {Kind::battery, small, true}}},
      {"unknown kinds are dropped",
       "[" + card("gpu") + "," + card("fan") + "," + card("CPU") + "]",
       {{Kind::fan, small, true}, {Kind::agentTokens, large, true}}},
      {"the first of two wins",
       "[" + card("cpu", "large") + "," + card("fan") + "," + card("cpu", "small", false) + "]",
       {{Kind::cpu, large, true}, {Kind::fan, small, true}, {Kind::agentTokens, large, true}}},
      {"the retired card is expanded in place",
       "[" + card("fan") + "," + card("quickStatus", "large", false) + "," + card("cpu") + "]",
       {{Kind::fan, small, true}, {Kind::wifi, large, false}, {Kind::audio, large, false}, {Kind::cpu, small, true}}},
      {"but only by what is missing yet",
       "[" + card("audio") + "," + card("quickStatus", "large", true) + "," + card("wifi", "small", false) + "]",
       {{Kind::audio, small, true}, {Kind::wifi, large, true}, {Kind::agentTokens, large, true}}},
      {"other keys do not matter",
       R"([{"kind":"fan","size":"small","isEnabled":false,"colour":[1]}])",
       {{Kind::fan, small, false}}},
      {"only unknown kinds",
       "[" + card("gpu") + "]",
       {{Kind::agentTokens, large, true}, {Kind::agentLimits, large, true}}},
  };
  for (const Case& given : cases) {
    const auto cards = load(given.stored, ComponentPlacement::dashboard);
    EXPECT_EQ(std::vector(cards.begin(), cards.begin() + static_cast<std::ptrdiff_t>(given.beginning.size())),
              given.beginning)
        << given.what;
    EXPECT_THAT(kindsOf(cards), testing::UnorderedElementsAreArray(allMonitorComponentKinds)) << given.what;
  }
}

TEST(DashboardLayout, whatIsNoListOfCardsGivesTheDefault) {
  const std::vector<std::string> texts = {"",
                                          "[]",
                                          "{}",
                                          "null",
                                          "[",
                                          "[1]",
                                          "[null]",
                                          "[" + card("cpu") + ",{}]",
                                          "[" + card("fan", "medium") + "]",
                                          R"([{"kind":1,"size":"small","isEnabled":true}])",
                                          R"([{"kind":"fan","size":"small","isEnabled":1}])",
                                          R"([{"kind":"fan","size":"small","isEnabled":"true"}])",
                                          R"([{"kind":"fan","size":"small"}])",
                                          R"([{"kind":"fan","size":null,"isEnabled":true}])",
                                          "[" + card("fan") + "] x",
                                          "[" + card("\xFF") + "]",
                                          std::string(100'000, '['),
                                          "[" + card(std::string(maximumLayoutBytes, 'x')) + "]"};
  for (const std::string& text : texts) {
    EXPECT_EQ(load(text, ComponentPlacement::menuBar), defaultLayout(ComponentPlacement::menuBar))
        << text.substr(0, 60);
    EXPECT_FALSE(decodes(text)) << text.substr(0, 60);
  }
}

TEST(DashboardLayout, itIsStoredInDisplayOrder) {
  EXPECT_EQ(encode({{Kind::cpu, small, true}, {Kind::agentTokens, large, false}}),
            "[" + card("cpu") + "," + card("agentTokens", "large", false) + "]");
}

TEST(LegacyQuickStatus, theRetiredCardIsReplacedOnceInBothLayouts) {
  InMemoryPreferenceDomain domain;
  PreferenceStore store(domain);
  domain.changeByAnotherProgram(
      dashboardKey,
      PreferenceData{"[" + card("fan") + "," + card("quickStatus", "large", false) + "," + card("gpu") + "]"});
  domain.changeByAnotherProgram(menuBarKey,
                                PreferenceData{"[" + card("quickStatus") + "," + card("wifi", "large", false) + "," +
                                               card("quickStatus", "large") + "]"});
  domain.putUnknownShape("settings.quickStatusPanel");
  migrateLegacyQuickStatus(store);
  EXPECT_EQ(store.data(dashboardKey), "[" + card("fan") + "," + card("wifi", "large", false) + "," +
                                          card("audio", "large", false) + "," + card("gpu") + "]");
  EXPECT_EQ(store.data(menuBarKey), "[" + card("audio") + "," + card("wifi", "large", false) + "]")
      << "a card of its own keeps its choice";
  EXPECT_FALSE(store.contains("settings.quickStatusPanel"));
  const auto writes = domain.writes().size();
  migrateLegacyQuickStatus(store);
  EXPECT_EQ(domain.writes().size(), writes);
}

TEST(LegacyQuickStatus, layoutsWithoutItAndBrokenOnesStayAsTheyAre) {
  InMemoryPreferenceDomain domain;
  PreferenceStore store(domain);
  domain.changeByAnotherProgram(dashboardKey, PreferenceData{"[" + card("cpu") + "]"});
  domain.changeByAnotherProgram(menuBarKey, PreferenceData{"[" + card("quickStatus") + ",5]"});
  migrateLegacyQuickStatus(store);
  EXPECT_THAT(domain.writes(), IsEmpty());
}

TEST(ConnectionOrAudioCards, anEnabledOneInEitherLayoutCounts) {
  InMemoryPreferenceDomain domain;
  PreferenceStore store(domain);
  EXPECT_FALSE(hasConnectionOrAudioCards(store));
  for (const char* key : {dashboardKey, menuBarKey}) {
    for (const char* kind : {"wifi", "audio", "quickStatus"}) {
      domain.changeByAnotherProgram(key, PreferenceData{"[" + card(kind) + "]"});
      EXPECT_TRUE(hasConnectionOrAudioCards(store)) << key << kind;
      domain.changeByAnotherProgram(key, PreferenceData{"[" + card(kind, "small", false) + "]"});
      EXPECT_FALSE(hasConnectionOrAudioCards(store)) << key << kind;
    }
  }
}

TEST(MonitorComponents, rawValuesAreReadBackAndOnlyTheAgentsCardsAreAgents) {
  for (const Kind kind : allMonitorComponentKinds) {
    EXPECT_EQ(monitorComponentKindFromRawValue(rawValue(kind)), kind);
    EXPECT_EQ(category(kind) == MonitorComponentCategory::agents, rawValue(kind).starts_with("agent"));
    EXPECT_FALSE(title(kind).empty());
    EXPECT_EQ(tint(kind).size(), 6u);
  }
  EXPECT_EQ(tint(Kind::network), tint(Kind::wifi));
  EXPECT_EQ(tint(Kind::memory), tint(Kind::audio));
  EXPECT_EQ(title(Kind::agentLimits), "使用额度");
  EXPECT_EQ(subtitle(Kind::agentTokens), "8 个本地 Agent");
  EXPECT_FALSE(subtitle(Kind::cpu));
}

}  // namespace
}  // namespace quillmeter
