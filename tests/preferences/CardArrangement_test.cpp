#include <gtest/gtest.h>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/PreferenceStore.h"
#include "preferences/StoredCardLayout.h"

namespace quillmeter {
namespace {

using Kind = MonitorComponentKind;
constexpr auto small = DashboardCardSize::small;
constexpr auto large = DashboardCardSize::large;

CardArrangement arrangement() {
  return CardArrangement(ComponentPlacement::dashboard, {{Kind::cpu, small, true},
                                                         {Kind::wifi, small, false},
                                                         {Kind::memory, small, true},
                                                         {Kind::audio, small, false},
                                                         {Kind::disk, large, true},
                                                         {Kind::fan, small, false}});
}

std::string order(const std::vector<DashboardCardConfig>& cards) {
  std::string text;
  for (const DashboardCardConfig& card : cards)
    text += std::string(text.empty() ? "" : " ") + std::string(rawValue(card.kind));
  return text;
}

TEST(CardArrangement, movesAmongTheShownCardsAndLeavesTheHiddenOnesInTheirPlaces) {
  const struct {
    Kind kind;
    std::size_t place;
    const char* shown;
    const char* all;
  } cases[] = {
      {Kind::cpu, 1, "memory cpu disk", "wifi memory audio cpu disk fan"},
      {Kind::cpu, 2, "memory disk cpu", "wifi memory audio disk cpu fan"},
      {Kind::cpu, 99, "memory disk cpu", "wifi memory audio disk cpu fan"},
      {Kind::disk, 0, "disk cpu memory", "disk cpu wifi memory audio fan"},
  };
  for (const auto& [kind, place, shown, all] : cases) {
    CardArrangement cards = arrangement();
    EXPECT_TRUE(cards.moveTo(kind, place));
    EXPECT_EQ(order(cards.shown()), shown);
    EXPECT_EQ(order(cards.cards()), all);
  }
}

TEST(CardArrangement, stepsThatChangeNothingAreNoSteps) {
  CardArrangement cards = arrangement();
  EXPECT_FALSE(cards.moveTo(Kind::cpu, 0));
  EXPECT_FALSE(cards.moveBy(Kind::cpu, -1));
  EXPECT_FALSE(cards.moveBy(Kind::disk, 1));
  EXPECT_FALSE(cards.moveTo(Kind::wifi, 0));
  EXPECT_FALSE(cards.setSize(Kind::cpu, small));
  EXPECT_FALSE(cards.setEnabled(Kind::cpu, true));
  EXPECT_FALSE(cards.setEnabled(Kind::battery, true));
  EXPECT_FALSE(cards.canUndo());
}

TEST(CardArrangement, everyStepCanBeUndoneAndDoneAgainUntilAnotherStep) {
  CardArrangement cards = arrangement();
  const auto before = cards.cards();
  EXPECT_TRUE(cards.setSize(Kind::cpu, large));
  EXPECT_TRUE(cards.setEnabled(Kind::wifi, true));
  EXPECT_TRUE(cards.moveBy(Kind::wifi, 1));
  EXPECT_EQ(order(cards.shown()), "cpu memory wifi disk");
  EXPECT_TRUE(cards.reset());
  EXPECT_TRUE(cards.isDefault());
  EXPECT_TRUE(cards.undo());
  EXPECT_EQ(order(cards.shown()), "cpu memory wifi disk");
  EXPECT_TRUE(cards.redo());
  EXPECT_TRUE(cards.isDefault());
  while (cards.undo()) {
  }
  EXPECT_EQ(cards.cards(), before);
  EXPECT_TRUE(cards.setSize(Kind::memory, large));
  EXPECT_FALSE(cards.redo());
}

TEST(CardArrangement, aHiddenCardMovesAmongAllCards) {
  CardArrangement cards = arrangement();
  EXPECT_TRUE(cards.moveBy(Kind::fan, -10));
  EXPECT_EQ(order(cards.cards()), "fan cpu wifi memory audio disk");
  EXPECT_EQ(cards.placeOf(Kind::fan), std::nullopt);
}

struct StoredCards : testing::Test {
  const std::string_view key = DashboardLayoutStorage::preferenceKey(ComponentPlacement::menuBar);
  InMemoryPreferenceDomain domain{"test"};
  PreferenceStore preferences{domain};
  int changes = 0;
  StoredCardLayout layout{preferences, ComponentPlacement::menuBar, [this] { ++changes; }};
};

TEST_F(StoredCards, areWrittenWithEachStepAndToldOnce) {
  ASSERT_TRUE(layout.edit([](CardArrangement& cards) { return cards.moveBy(Kind::cpu, -1); }));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(DashboardLayoutStorage::load(preferences, ComponentPlacement::menuBar), layout.arrangement().cards());
  EXPECT_EQ(layout.arrangement().placeOf(Kind::cpu), 0);
  ASSERT_TRUE(layout.edit([](CardArrangement& cards) { return cards.undo(); }));
  EXPECT_EQ(layout.arrangement().placeOf(Kind::cpu), 1);
}

TEST_F(StoredCards, areAsBeforeWhenTheyCannotBeWritten) {
  const auto before = layout.arrangement().cards();
  domain.refuseWrites(PreferenceProblem{PreferenceProblem::Kind::unwritable, "/x", 30, {}});
  const auto written = layout.edit([](CardArrangement& cards) { return cards.setSize(Kind::cpu, large); });
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().kind, PreferenceProblem::Kind::unwritable);
  EXPECT_EQ(layout.arrangement().cards(), before);
  EXPECT_FALSE(layout.arrangement().canUndo());
}

TEST_F(StoredCards, thatSomeoneElseStoresAreTakenOverAndEndTheSteps) {
  ASSERT_TRUE(layout.edit([](CardArrangement& cards) { return cards.setSize(Kind::cpu, large); }));
  ASSERT_TRUE(preferences.setData(key, R"([{"kind":"fan","size":"large","isEnabled":true}])"));
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(layout.arrangement().placeOf(Kind::fan), 0);
  EXPECT_FALSE(layout.arrangement().canUndo());
}

}  // namespace
}  // namespace quillmeter
