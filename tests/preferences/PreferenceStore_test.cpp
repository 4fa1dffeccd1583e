#include "preferences/PreferenceStore.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/AppLanguage.h"
#include "preferences/SettingText.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* bundle = "com.kesto.Quillmeter";

struct PreferenceStoreTest : testing::Test {
  InMemoryPreferenceDomain domain;
  PreferenceStore store{domain};
};

TEST_F(PreferenceStoreTest, withNothingStoredTheFourteenDefaultsHoldAndNothingIsWritten) {
  EXPECT_FALSE(store.contains("settings.appTheme"));
  SettingsKeys::registerDefaults(store);
  EXPECT_EQ(store.string("settings.appTheme"), "light");
  EXPECT_EQ(store.string("settings.appLanguage"), "zh-Hans");
  EXPECT_EQ(store.string("settings.menuBarMetric"), "cpu");
  EXPECT_EQ(store.string("settings.menuBar.style"), "systemTrio");
  EXPECT_EQ(store.real("settings.refreshInterval"), 2.0);
  for (const char* key : {"enabled", "codex", "claude"})
    EXPECT_EQ(store.boolean("settings.agentTokens."s + key), true) << key;
  for (const char* key : {"qwenOffice", "workBuddy", "opencode", "hermes", "openclaw", "pi"}) {
    EXPECT_EQ(store.boolean("settings.agentTokens."s + key), false) << key;
  }
  const auto registered = std::ranges::count_if(
      SettingsKeys::all(), [&](const auto& row) { return store.contains(SettingsKeys::keyOf(row)); });
  EXPECT_EQ(registered, 14);
  EXPECT_FALSE(store.contains("settings.showInDock"));
  EXPECT_TRUE(store.value(SettingsKeys::showInDock)) << "the row's default holds without registration";
  EXPECT_EQ(store.value(SettingsKeys::compactIconSize), 22.0);
  EXPECT_FALSE(store.value(SettingsKeys::dashboardLayout));
  EXPECT_THAT(domain.writes(), IsEmpty());
}

TEST_F(PreferenceStoreTest, aStoredValueOfTheWrongTypeCountsAsAbsent) {
  SettingsKeys::registerDefaults(store);
  const std::vector<PreferenceValue> values = {false, std::int64_t{5}, 5.5, "text"s, PreferenceData{"text"}};
  for (const PreferenceValue& value : values) {
    for (const char* key : {"settings.appTheme", "settings.agentTokens.codex", "settings.refreshInterval",
                            "onboarding.completedVersion", "settings.dashboardLayout.v2"}) {
      domain.changeByAnotherProgram(key, value);
    }
    EXPECT_EQ(store.value(SettingsKeys::appTheme), value == PreferenceValue("text"s) ? "text" : "light");
    EXPECT_EQ(store.value(SettingsKeys::codexMonitoringEnabled), value != PreferenceValue(false));
    EXPECT_EQ(store.value(SettingsKeys::refreshInterval), value.index() == 1 ? 5.0 : value.index() == 2 ? 5.5 : 2.0);
    EXPECT_EQ(store.value(SettingsKeys::onboardingVersion), value.index() == 1 ? 5 : 0);
    EXPECT_EQ(store.value(SettingsKeys::dashboardLayout).has_value(), value.index() == 4);
  }
  domain.putUnknownShape("settings.appTheme");
  EXPECT_EQ(store.value(SettingsKeys::appTheme), "light");
  EXPECT_TRUE(store.contains("settings.appTheme"));
}

TEST_F(PreferenceStoreTest, changesAreToldOnceWithTheirOrigin) {
  std::vector<std::pair<std::string, PreferenceChangeOrigin>> told;
  auto subscription = store.onChange([&](const std::vector<std::string>& keys, PreferenceChangeOrigin origin) {
    for (const std::string& key : keys) told.emplace_back(key, origin);
  });
  const auto before = store.revision();
  ASSERT_TRUE(store.set("a", true));
  ASSERT_TRUE(store.set("a", true));  // nothing new
  domain.changeByAnotherProgram("b", true);
  store.refresh();
  store.refresh();
  EXPECT_THAT(told, ElementsAre(std::pair("a", PreferenceChangeOrigin::thisProgram),
                                std::pair("b", PreferenceChangeOrigin::anotherProgram)));
  EXPECT_EQ(store.revision(), before + 2);
  domain.refuseWrites(PreferenceProblem{PreferenceProblem::Kind::unwritable, "settings.json", EROFS, {}});
  EXPECT_FALSE(store.set("a", false));
  EXPECT_FALSE(store.remove("a"));
  subscription.reset();
  domain.changeByAnotherProgram("b", false);
  store.refresh();
  EXPECT_EQ(told.size(), 2u);
}

TEST_F(PreferenceStoreTest, onlyWhatAnUpgraderWroteMarksTheOnboardingAsDone) {
  struct Case {
    std::string key;
    bool isUpgrade;
  };
  std::vector<Case> cases = {{"settings.menuBar.style", false},
                             {"settings.agentTokens.hermes", false},
                             {"settings.agentLogs.hermes.bookmark.v2", false},
                             {"navigation.agentUsageRange", false},
                             {"unknown", false}};
  for (const char* key : {"settings.appTheme", "settings.appLanguage", "settings.launchAtLogin", "settings.showInDock",
                          "settings.dashboardLayout.v2", "settings.menuBarLayout.v2", "settings.menuBarMetric",
                          "settings.agentTokens.enabled", "settings.agentTokens.codex", "settings.agentTokens.claude",
                          "settings.refreshInterval", "settings.selectedPage", "settings.agentLogs.codex.bookmark.v2",
                          "settings.agentLogs.claude.bookmark.v2"}) {
    cases.push_back({key, true});
  }
  for (const Case& given : cases) {
    InMemoryPreferenceDomain written;
    PreferenceStore settings(written);
    SettingsKeys::registerDefaults(settings);  // registered ones do not count
    written.putUnknownShape(given.key);        // of whatever type
    SettingsKeys::prepareOnboardingForLaunch(settings, bundle);
    EXPECT_EQ(settings.integer("onboarding.completedVersion"),
              given.isUpgrade ? std::optional<std::int64_t>(1) : std::nullopt)
        << given.key;
  }
}

TEST_F(PreferenceStoreTest, onboardingIsNotPreparedForFirstLaunchesOrWithoutIdentifierOrTwice) {
  SettingsKeys::registerDefaults(store);
  SettingsKeys::prepareOnboardingForLaunch(store, bundle);
  EXPECT_FALSE(store.contains("onboarding.completedVersion"));
  domain.changeByAnotherProgram("settings.appTheme", "dark"s);
  SettingsKeys::prepareOnboardingForLaunch(store, std::nullopt);
  SettingsKeys::prepareOnboardingForLaunch(store, "another.program");
  EXPECT_FALSE(store.contains("onboarding.completedVersion"));
  domain.changeByAnotherProgram("onboarding.completedVersion", std::int64_t{0});
  SettingsKeys::prepareOnboardingForLaunch(store, bundle);
  EXPECT_EQ(store.integer("onboarding.completedVersion"), 0);
  EXPECT_THAT(domain.writes(), IsEmpty());
}

TEST_F(PreferenceStoreTest, anUnknownLanguageIsSimplifiedChinese) {
  EXPECT_EQ(selectedAppLanguage(store), AppLanguage::simplifiedChinese);
  for (const auto& [stored, expected] :
       std::vector<std::pair<PreferenceValue, AppLanguage>>{{"en"s, AppLanguage::english},
                                                            {"system"s, AppLanguage::system},
                                                            {"EN"s, AppLanguage::simplifiedChinese},
                                                            {true, AppLanguage::simplifiedChinese}}) {
    domain.changeByAnotherProgram("settings.appLanguage", stored);
    EXPECT_EQ(selectedAppLanguage(store), expected);
  }
  EXPECT_EQ(localeIdentifier(AppLanguage::system, "de_DE"), "de_DE");
  EXPECT_EQ(localeIdentifier(AppLanguage::simplifiedChinese, "de_DE"), "zh-Hans");
}

TEST(AppLanguage, theChoiceIsMirroredForTheWidgetBeforeItReloads) {
  InMemoryPreferenceDomain suite("group.com.kesto.Quillmeter");
  int reloads = 0;
  didSelectAppLanguage("en", &suite, [&] {
    ++reloads;
    EXPECT_EQ(suite.get("settings.appLanguage"), PreferenceValue("en"s));
  });
  didSelectAppLanguage("en", nullptr, [&] { ++reloads; });
  EXPECT_EQ(reloads, 2);
}

TEST(SettingText, everyRowIsFoundByItsKeyAndItsDefaultIsAcceptedAsText) {
  for (const auto& row : SettingsKeys::all()) {
    ASSERT_EQ(SettingsKeys::find(SettingsKeys::keyOf(row)), &row);
    if (const auto value = settingDefault(row)) {
      EXPECT_EQ(parseSettingText(row, settingText(*value)), *value) << SettingsKeys::keyOf(row);
    }
  }
  EXPECT_EQ(SettingsKeys::find("settings.nothing"), nullptr);
}

TEST(SettingText, onlyValuesThatTheSettingTakesAreAccepted) {
  struct Case {
    const char* key;
    const char* text;
    std::optional<PreferenceValue> expected;
  };
  const std::vector<Case> cases = {{"settings.appTheme", "dark", "dark"s},
                                   {"settings.appTheme", "Dark", std::nullopt},
                                   {"settings.appTheme", "", std::nullopt},
                                   {"settings.menuBar.symbol", "cat.fill", "cat.fill"s},
                                   {"settings.showInDock", "off", false},
                                   {"settings.showInDock", "1", true},
                                   {"settings.showInDock", "maybe", std::nullopt},
                                   {"settings.refreshInterval", "5", 5.0},
                                   {"settings.refreshInterval", "1.5", 1.5},
                                   {"settings.refreshInterval", "0.5", std::nullopt},
                                   {"settings.refreshInterval", "1,5", std::nullopt},
                                   {"settings.refreshInterval", "inf", std::nullopt},
                                   {"settings.refreshInterval", "nan", std::nullopt},
                                   {"settings.refreshInterval", "5s", std::nullopt},
                                   {"onboarding.completedVersion", "1", std::int64_t{1}},
                                   {"onboarding.completedVersion", "1.0", std::nullopt},
                                   {"onboarding.completedVersion", "99999999999999999999", std::nullopt},
                                   {"settings.quickStatusPanel", "true", std::nullopt},
                                   {"settings.menuBarLayout.v2", R"([{"kind":"cpu","size":"small","isEnabled":true}])",
                                    PreferenceData{R"([{"kind":"cpu","size":"small","isEnabled":true}])"}},
                                   {"settings.menuBarLayout.v2", "[]", std::nullopt}};
  for (const Case& given : cases) {
    const auto parsed = parseSettingText(*SettingsKeys::find(given.key), given.text);
    EXPECT_EQ(parsed ? std::optional(*parsed) : std::nullopt, given.expected) << given.key << " = " << given.text;
    if (!parsed) {
      EXPECT_THAT(parsed.error(), testing::HasSubstr(given.key));
    }
  }
}

}  // namespace
}  // namespace quillmeter
