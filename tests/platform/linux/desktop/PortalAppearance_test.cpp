#include "platform/linux/desktop/PortalAppearance.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QDBusVariant>

#include "screentime/desktop/EventLoop.h"
#include "screentime/desktop/MessageBus.h"

namespace quillmeter::test {
namespace {

const std::string portal = "org.freedesktop.portal.Desktop";
const std::string portalPath = "/org/freedesktop/portal/desktop";
const std::string settingsInterface = "org.freedesktop.portal.Settings";
const std::string appearanceGroup = "org.freedesktop.appearance";
const std::string interfaceGroup = "org.gnome.desktop.interface";
const std::string accessibilityGroup = "org.gnome.desktop.a11y.interface";

constexpr GtkDesktop gnome{true};

// A session bus of the test's own and what the program learns from it.
class DesktopPortal : public testing::Test {
 protected:
  void SetUp() override {
    if (!MessageBus::missing().empty()) GTEST_SKIP() << MessageBus::missing();
    ASSERT_FALSE(bus_.address().empty());
  }
  void TearDown() override {
    appearance_.reset();
    connection_.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("appearance"));
  }
  // A portal that answers with these groups, in Python. Without them it has no settings.
  void startPortal(const std::string& groups) {
    portal_ = bus_.startMock(portal, portalPath, settingsInterface);
    if (!groups.empty())
      bus_.addMethod(portal, portalPath, settingsInterface, "ReadAll", "as", "a{sa{sv}}", "ret = " + groups);
  }
  void watch() {
    connection_ = QDBusConnection::connectToBus(QString::fromStdString(bus_.address()), QStringLiteral("appearance"));
    appearance_.emplace(*connection_, desktop_);
    appearance_->setChangeHandler([this] { told_.push_back(appearance_->current()); });
  }
  void change(const std::string& group, const std::string& key, const QVariant& value) {
    bus_.emitSignal(
        portal, portalPath, settingsInterface, "SettingChanged", "ssv",
        {QString::fromStdString(group), QString::fromStdString(key), QVariant::fromValue(QDBusVariant(value))});
  }
  bool becomes(const AppearancePreferences& preferences) {
    return waitUntil([&] { return appearance_->current() == preferences; });
  }

  MessageBus bus_;
  ChildProcess portal_;
  std::optional<QDBusConnection> connection_;
  std::optional<GtkDesktop> desktop_ = gnome;
  std::optional<PortalAppearance> appearance_;
  std::vector<AppearancePreferences> told_;
};

const std::string darkGroups =
    "{'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(1, variant_level=1)}, "
    "'org.gnome.desktop.interface': {'enable-animations': dbus.Boolean(False, variant_level=1)}, "
    "'org.gnome.desktop.a11y.interface': {'high-contrast': dbus.Boolean(True, variant_level=1)}, "
    "'org.example': {'color-scheme': dbus.UInt32(2, variant_level=1)}}";

TEST_F(DesktopPortal, isReadOnceItHasAnswered) {
  startPortal(darkGroups);
  watch();
  EXPECT_EQ(appearance_->current(), AppearancePreferences()) << "nothing waits for the answer";
  EXPECT_TRUE(becomes({.dark = true, .highContrast = true, .reducedMotion = true}));
  EXPECT_EQ(told_, (std::vector<AppearancePreferences>{{true, true, true}}));
}

TEST_F(DesktopPortal, tellsOfEachChangeThatMatters) {
  startPortal("{'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(1, variant_level=1)}}");
  watch();
  ASSERT_TRUE(becomes({.dark = true}));
  struct Step {
    std::string group;
    std::string key;
    QVariant value;
    AppearancePreferences expected;
  };
  const std::vector<Step> steps = {
      {appearanceGroup, "contrast", 1U, {true, true, false}},
      {appearanceGroup, "contrast", 0U, {true, false, false}},
      {accessibilityGroup, "high-contrast", true, {true, true, false}},
      {interfaceGroup, "enable-animations", false, {true, true, true}},
      {accessibilityGroup, "high-contrast", false, {true, false, true}},
      {interfaceGroup, "enable-animations", true, {true, false, false}},
      {appearanceGroup, "reduced-motion", 1U, {true, false, true}},
      {appearanceGroup, "color-scheme", 2U, {false, false, true}},
      {appearanceGroup, "reduced-motion", 0U, {false, false, false}},
  };
  told_.clear();
  std::vector<AppearancePreferences> expected;
  for (const Step& step : steps) {
    change(step.group, step.key, step.value);
    // Neither is news.
    change(step.group, step.key, step.value);
    change(interfaceGroup, "cursor-size", 24);
    expected.push_back(step.expected);
    EXPECT_TRUE(waitUntil([&] { return told_.size() >= expected.size(); })) << step.key;
  }
  EXPECT_EQ(told_, expected);
}

std::string fontGroups(const std::string& name, const std::string& scale) {
  return "{'org.gnome.desktop.interface': {'font-name': dbus.String('" + name +
         "', variant_level=1), 'text-scaling-factor': " + scale +
         "}, 'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(1, variant_level=1)}}";
}

TEST_F(DesktopPortal, tellsAndFollowsTheFontOfAGtkDesktop) {
  startPortal(fontGroups("Cantarell 11", "dbus.Double(1.25, variant_level=1)"));
  watch();
  ASSERT_TRUE(becomes({.dark = true, .fontName = "Cantarell 11", .textScale = 1.25}));
  change(interfaceGroup, "text-scaling-factor", 2.0);
  EXPECT_TRUE(becomes({.dark = true, .fontName = "Cantarell 11", .textScale = 2}));
  change(interfaceGroup, "font-name", QStringLiteral("Noto Sans Bold 12"));
  EXPECT_TRUE(becomes({.dark = true, .fontName = "Noto Sans Bold 12", .textScale = 2}));
  // Numbers that would make text vanish or fill the screen.
  for (const double wrong : {0.0, -1.0, 100.0, std::numeric_limits<double>::quiet_NaN()}) {
    change(interfaceGroup, "text-scaling-factor", wrong);
    EXPECT_TRUE(becomes({.dark = true, .fontName = "Noto Sans Bold 12"})) << wrong;
    change(interfaceGroup, "text-scaling-factor", 2.0);
    EXPECT_TRUE(becomes({.dark = true, .fontName = "Noto Sans Bold 12", .textScale = 2}));
  }
}

TEST_F(DesktopPortal, tellsNoFontThatNobodyChose) {
  startPortal(fontGroups("Cantarell 11", "dbus.String('2', variant_level=1)"));
  desktop_ = GtkDesktop{};
  watch();
  EXPECT_TRUE(becomes({.dark = true})) << "as GNOME came, on another desktop";
  change(interfaceGroup, "font-name", QStringLiteral("Ubuntu 11"));
  EXPECT_TRUE(becomes({.dark = true, .fontName = "Ubuntu 11"}));

  desktop_ = std::nullopt;
  watch();
  ASSERT_TRUE(becomes({.dark = true}));
  change(interfaceGroup, "font-name", QStringLiteral("Ubuntu 12"));
  change(appearanceGroup, "contrast", 1U);
  EXPECT_TRUE(becomes({.dark = true, .highContrast = true})) << "not made with GTK";
}

TEST(GtkDesktops, areFoundAmongTheNamesOfTheSession) {
  for (const char* names : {"GNOME", "ubuntu:GNOME", "Budgie:gnome", "Unity:Unity7:ubuntu", "Pantheon"})
    EXPECT_EQ(gtkDesktopNamed(names), GtkDesktop{true}) << names;
  for (const char* names : {"XFCE", "MATE", "X-Cinnamon", "LXDE"})
    EXPECT_EQ(gtkDesktopNamed(names), GtkDesktop{}) << names;
  for (const char* names : {"", ":", "KDE", "sway", "LXQt", "GNOMER:X", "wlroots:"})
    EXPECT_EQ(gtkDesktopNamed(names), std::nullopt) << names;
}

TEST_F(DesktopPortal, isFoundWhenItStartsLaterAndMissedQuietly) {
  watch();
  EXPECT_FALSE(waitUntil([&] { return !told_.empty(); }, 0.2));
  // It has its name before it can answer, which is no answer then.
  startPortal("");
  ASSERT_TRUE(waitUntil([&] {
    change(appearanceGroup, "color-scheme", 1U);
    return appearance_->current().dark;
  }));
  portal_.end();
  ASSERT_TRUE(waitUntil([&] { return !bus_.hasName(portal); }));
  EXPECT_FALSE(waitUntil([&] { return !appearance_->current().dark; }, 0.2)) << "a restart must not flash";
}

TEST_F(DesktopPortal, withValuesOfOtherTypesPrefersNothing) {
  startPortal(
      "{'org.freedesktop.appearance': {'color-scheme': dbus.String('dark', variant_level=1), "
      "'contrast': dbus.Int64(1, variant_level=1)}, "
      "'org.gnome.desktop.interface': {'enable-animations': dbus.String('false', variant_level=1)}, "
      "'org.gnome.desktop.a11y.interface': {'high-contrast': dbus.Boolean(True, variant_level=2)}}");
  watch();
  EXPECT_TRUE(becomes({.highContrast = true})) << "only what is wrapped twice is understood";
}

TEST_F(DesktopPortal, withoutABusPrefersNothing) {
  const PortalAppearance lonely(QDBusConnection(QStringLiteral("nowhere")));
  EXPECT_EQ(lonely.current(), AppearancePreferences());
}

}  // namespace
}  // namespace quillmeter::test
