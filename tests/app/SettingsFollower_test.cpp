#include "app/SettingsFollower.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/fake/ManualQueue.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

TEST(SettingsFollower, actsOnceTheWriterIsDoneAndOnlyOnItsSubjects) {
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences(domain);
  ManualExecutor executor;
  std::map<std::string, int> calls;
  auto counting = [&calls](const char* name) { return [&calls, name] { ++calls[name]; }; };
  SettingsFollower follower(preferences, executor,
                            {.languageChanged = counting("language"),
                             .periodChanged = counting("period"),
                             .quickStatusNeeds = counting("quick"),
                             .agentsChanged = counting("agents"),
                             .dockChanged = counting("dock")});
  const auto write = [&](std::string_view key, PreferenceValue value) { ASSERT_TRUE(preferences.set(key, value)); };
  write(SettingsKeys::appLanguage.key, std::string("en"));
  EXPECT_TRUE(calls.empty()) << "acted within the writer's call";
  executor.runAll();
  write(SettingsKeys::refreshInterval.key, 5.0);
  write(SettingsKeys::menuBarStyle.key, std::string("symbol"));
  write(SettingsKeys::menuBarLayout.key, PreferenceData{*DashboardLayoutStorage::encode(
                                             DashboardLayoutStorage::defaultLayout(ComponentPlacement::menuBar))});
  write(SettingsKeys::piMonitoringEnabled.key, true);
  write("settings.agentLogs.codex.bookmark.v2", PreferenceData{"/home/u/.codex"});
  write(SettingsKeys::showInDock.key, false);
  write(SettingsKeys::compactIconColor.key, false);
  executor.runAll();
  EXPECT_EQ(calls,
            (std::map<std::string, int>{{"language", 1}, {"period", 1}, {"quick", 2}, {"agents", 2}, {"dock", 1}}));
}

}  // namespace
}  // namespace quillmeter
