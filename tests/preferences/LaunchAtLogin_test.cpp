#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "platform/linux/XdgLoginItems.h"
#include "preferences/DockVisibilityManager.h"
#include "preferences/LaunchAtLoginManager.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

using testing::HasSubstr;
using ManagerError = LaunchAtLoginManager::ManagerError;
using State = LaunchAtLoginState;

struct LaunchAtLoginTest : testing::Test {
  State state() { return LaunchAtLoginManager::state(items); }
  void entrySays(const std::string& text) { config.write("autostart/com.kesto.Quillmeter.desktop", text); }

  const test::TemporaryDirectory config;
  XdgLoginItems items{config.path(), {"/opt/My \"Apps\"/100%/quillmeter", "--hidden"}};
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences{domain};
};

TEST_F(LaunchAtLoginTest, turningItOnWritesAnEntryAndTurningItOffTakesItAway) {
  EXPECT_EQ(state(), State::disabled);
  EXPECT_EQ(LaunchAtLoginManager::setEnabled(true, items, preferences), State::enabled);
  EXPECT_TRUE(preferences.value(SettingsKeys::launchAtLogin));
  const auto entry = config.path() / "autostart/com.kesto.Quillmeter.desktop";
  EXPECT_THAT(test::readFile(entry), HasSubstr("\nExec=\"/opt/My \\\\\"Apps\\\\\"/100%%/quillmeter\" \"--hidden\"\n"));
  EXPECT_EQ(LaunchAtLoginManager::setEnabled(false, items, preferences), State::disabled);
  EXPECT_FALSE(preferences.value(SettingsKeys::launchAtLogin));
  EXPECT_FALSE(std::filesystem::exists(entry));
  EXPECT_EQ(LaunchAtLoginManager::setEnabled(false, items, preferences), State::disabled) << "once more";
}

TEST_F(LaunchAtLoginTest, whatTheUserSwitchedOffElsewhereCountsAsDisabled) {
  struct Case {
    const char* entry;
    State state;
  };
  const Case cases[] = {{"[Desktop Entry]\nExec=quillmeter\n", State::enabled},
                        {"[Desktop Entry]\r\nExec = quillmeter\r\nHidden = true\r\n", State::disabled},
                        {"[Desktop Entry]\nExec=quillmeter\nX-GNOME-Autostart-enabled=false", State::disabled},
                        {"[Desktop Entry]\nExec=quillmeter\nHidden=false\n#Hidden=true\n", State::enabled},
                        {"[Desktop Entry]\nExec=quillmeter\n[Desktop Action x]\nHidden=true\n", State::enabled},
                        {"[Desktop Entry]\nName=Quillmeter\n", State::disabled},
                        {"", State::disabled}};
  for (const Case& c : cases) {
    entrySays(c.entry);
    EXPECT_EQ(state(), c.state) << c.entry;
  }
  entrySays("[Desktop Entry]\nExec=quillmeter\nHidden=true\n");
  EXPECT_EQ(LaunchAtLoginManager::setEnabled(true, items, preferences), State::enabled);
}

TEST_F(LaunchAtLoginTest, aFolderThatCannotBeWrittenGivesTheSystemsText) {
  config.write("autostart", "a file in the folder's place");
  const auto result = LaunchAtLoginManager::setEnabled(true, items, preferences);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().errorDescription(), "Not a directory");
  EXPECT_FALSE(domain.contains(SettingsKeys::launchAtLogin.key)) << "nothing was chosen that holds";
}

TEST_F(LaunchAtLoginTest, withoutAConfigurationFolderItIsUnsupported) {
  XdgLoginItems nowhere(".config", {"quillmeter"});
  EXPECT_EQ(LaunchAtLoginManager::state(nowhere), State::unsupported);
  const auto result = LaunchAtLoginManager::setEnabled(true, nowhere, preferences);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().errorDescription(), "当前系统版本暂不支持开机自启。");
  EXPECT_EQ(LaunchAtLoginManager::hint(State::requiresApproval), "请到系统设置的“登录项”中批准");
  EXPECT_EQ(LaunchAtLoginManager::hint(State::enabled), std::nullopt);
}

class FakePolicy final : public ActivationPolicy {
 public:
  bool setListed(bool value) override {
    if (!refuses) listed = value;
    return !refuses;
  }
  void activate() override { ++activations; }
  bool refuses = false;
  bool listed = true;
  int activations = 0;
};

TEST(DockVisibility, followsTheSettingAndStoresOnlyWhatTheSystemTook) {
  InMemoryPreferenceDomain domain;
  PreferenceStore preferences(domain);
  FakePolicy policy;
  EXPECT_TRUE(DockVisibilityManager::isDockIconVisible(preferences));
  EXPECT_TRUE(DockVisibilityManager::setDockIconVisible(false, policy, preferences));
  EXPECT_FALSE(DockVisibilityManager::isDockIconVisible(preferences));
  EXPECT_EQ(policy.activations, 0);
  policy.refuses = true;
  EXPECT_FALSE(DockVisibilityManager::setDockIconVisible(true, policy, preferences));
  EXPECT_FALSE(DockVisibilityManager::isDockIconVisible(preferences));
  policy.refuses = false;
  EXPECT_TRUE(DockVisibilityManager::setDockIconVisible(true, policy, preferences));
  EXPECT_TRUE(policy.listed);
  EXPECT_EQ(policy.activations, 1);
}

}  // namespace
}  // namespace quillmeter
