#include "ui/tray/TrayItem.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QMenu>
#include <QRect>
#include <QTest>
#include <QWindow>

#include "demo/FakeServices.h"
#include "platform/fake/FakeDesktop.h"
#include "preferences/SettingsKeys.h"
#include "ui/theme/Theme.h"
#include "ui/tray/NotifierTypes.h"
#include "ui/tray/TrayDesktop.h"

namespace quillmeter {

namespace {

using test::TrayDesktop;
using test::waitFor;

constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuPath = "/MenuBar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

class Tray : public testing::Test {
 protected:
  ~Tray() override {
    item_.reset();
    desktop_.endTrayer();
    desktop_.endWatcher();
  }

  void show() {
    item_.emplace(services_.ui, theme_,
                  TrayItem::Handlers{.togglePopover = [this](const QRect& icon) { opened_.push_back(icon); },
                                     .refresh = [this] { ++refreshes_; },
                                     .availabilityChanged = [this](bool is) { availability_.push_back(is); }});
    item_->show();
    services_.start();
  }
  void showWithWatcher() {
    desktop_.startWatcher();
    show();
    ASSERT_TRUE(waitFor([this] { return desktop_.registrations() == 1; }));
  }
  // A second tick, after what it set off has arrived.
  void tick(double seconds = 2) {
    services_.advance(seconds);
    desktop_.itemProperty("Id");  // a round trip over the bus
  }
  QList<NotifierPixmap> pixmaps() { return qdbus_cast<QList<NotifierPixmap>>(desktop_.itemProperty("IconPixmap")); }

  // The window in the X11 tray; null while there is none.
  static QWidget* embedded() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->inherits("QSystemTrayIconSys") && widget->isVisible()) return widget;
    }
    return nullptr;
  }
  // The tray has taken it, to the right of its screen, and shows it.
  static bool isDocked() {
    const QWidget* window = embedded();
    return window != nullptr && window->mapToGlobal(QPoint()).x() > 400 && window->windowHandle()->isExposed();
  }
  void click(int button) {
    const QPoint middle = embedded()->mapToGlobal(embedded()->rect().center());
    desktop_.xdotool(
        {"mousemove", std::to_string(middle.x()), std::to_string(middle.y()), "click", std::to_string(button)});
  }

  TrayDesktop& desktop_ = TrayDesktop::current();
  FakeServices services_;
  FakeDesktopAppearance appearance_;
  Theme theme_{*qApp, services_.preferences, appearance_};
  std::optional<TrayItem> item_;
  std::vector<QRect> opened_;
  int refreshes_ = 0;
  std::vector<bool> availability_;
};

TEST_F(Tray, aPanelOnTheBusGetsTheItemWithSharpImagesAndFigures) {
  showWithWatcher();
  EXPECT_TRUE(item_->isAvailable()) << "known when show() returns";
  std::vector<int> sizes;
  for (const NotifierPixmap& pixmap : pixmaps()) {
    EXPECT_EQ(pixmap.width, pixmap.height);
    EXPECT_EQ(pixmap.bytes.size(), qsizetype{4} * pixmap.width * pixmap.height);
    EXPECT_GT(pixmap.bytes.size() - pixmap.bytes.count('\0'), 4 * pixmap.width) << "something is drawn";
    sizes.push_back(pixmap.width);
  }
  EXPECT_EQ(sizes, (std::vector{16, 20, 22, 24, 28, 30, 32, 40, 44, 48, 64}));
  EXPECT_EQ(qvariant_cast<QDBusObjectPath>(desktop_.itemProperty("Menu")).path(), menuPath);
  const auto tooltip = qdbus_cast<NotifierTooltip>(desktop_.itemProperty("ToolTip"));
  EXPECT_TRUE(tooltip.title.startsWith("CPU ")) << tooltip.title.toStdString();
  EXPECT_TRUE(tooltip.text.startsWith("电量 ")) << tooltip.text.toStdString();
}

TEST_F(Tray, aPanelMayReadEverythingAtOnce) {
  showWithWatcher();
  const QDBusMessage reply =
      desktop_.callItem(itemPath, "org.freedesktop.DBus.Properties", "GetAll", {QString(itemInterface)});
  const auto all = qdbus_cast<QVariantMap>(reply.arguments().value(0));
  EXPECT_EQ(all.size(), 16);
  EXPECT_EQ(all.value("Status").toString(), "Active");
  EXPECT_EQ(qdbus_cast<QList<NotifierPixmap>>(all.value("IconPixmap")).size(), 11);
  const QDBusMessage xml = desktop_.callItem(itemPath, "org.freedesktop.DBus.Introspectable", "Introspect", {});
  for (const QString& name : all.keys()) {
    EXPECT_TRUE(xml.arguments().value(0).toString().contains("\"" + name + "\"")) << name.toStdString();
  }
}

TEST_F(Tray, thePanelIsToldOfANewIconOnlyWhenItLooksDifferentAndTheLastWasFetched) {
  showWithWatcher();
  int icons = 0;
  desktop_.countSignal(itemPath, itemInterface, "NewIcon", icons);
  pixmaps();
  const int painted = item_->paintCount();
  for (int i = 0; i < 10; ++i) tick();
  pixmaps();
  EXPECT_EQ(icons, 0);
  EXPECT_EQ(item_->paintCount(), painted);
  services_.description.battery->percent = 40;
  tick();
  ASSERT_TRUE(waitFor([&icons] { return icons == 1; }));
  EXPECT_EQ(item_->paintCount(), painted) << "painted when it is fetched";
  services_.description.battery->percent = 30;
  tick();
  EXPECT_EQ(icons, 1) << "told already";
  pixmaps();
  EXPECT_EQ(item_->paintCount(), painted + 11);
  services_.set(SettingsKeys::menuBarStyle.key, "symbol");
  EXPECT_TRUE(waitFor([&icons] { return icons == 2; }));
}

TEST_F(Tray, theTooltipFollowsSlowlyAndOnlyForPanelsThatReadIt) {
  services_.description.processorLoad = {0.1, 0.9, 0.3, 0.7, 0.5};
  showWithWatcher();
  int tooltips = 0;
  desktop_.countSignal(itemPath, itemInterface, "NewToolTip", tooltips);
  for (int i = 0; i < 10; ++i) tick();
  EXPECT_EQ(tooltips, 0) << "nobody reads it";
  for (int i = 0; i < 10; ++i) {
    desktop_.itemProperty("ToolTip");
    tick();
  }
  EXPECT_GE(tooltips, 1);
  EXPECT_LE(tooltips, 3);
}

TEST_F(Tray, clicksOfThePanelBecomeWishes) {
  showWithWatcher();
  desktop_.callItem(itemPath, itemInterface, "Activate", {700, 10});
  EXPECT_TRUE(waitFor([this] { return opened_.size() == 1; }));
  EXPECT_EQ(opened_.front().topLeft(), QPoint(700, 10));
  desktop_.callItem(itemPath, itemInterface, "Activate", {0, 0});
  EXPECT_TRUE(waitFor([this] { return opened_.size() == 2; }));
  EXPECT_TRUE(opened_.back().isEmpty()) << "the panel does not say where";
  desktop_.callItem(itemPath, itemInterface, "SecondaryActivate", {700, 10});
  EXPECT_TRUE(waitFor([this] { return refreshes_ == 1; }));
  const QDBusMessage unknown = desktop_.callItem(itemPath, itemInterface, "Dance", {});
  EXPECT_EQ(unknown.type(), QDBusMessage::ErrorMessage);
}

TEST_F(Tray, thePanelReadsTheMenuAndItsLinesWork) {
  showWithWatcher();
  const QDBusMessage reply = desktop_.callItem(menuPath, menuInterface, "GetLayout", {0, -1, QStringList()});
  const auto root = qdbus_cast<NotifierMenuItem>(reply.arguments().value(1));
  ASSERT_EQ(root.children.size(), 7);
  QStringList lines;
  int quit = 0;
  for (const QDBusVariant& child : root.children) {
    const auto line = qdbus_cast<NotifierMenuItem>(child.variant());
    lines.append(line.properties.value("label", "-").toString());
    quit = line.id;
  }
  EXPECT_TRUE(lines.front().startsWith("今天")) << "for reading";
  EXPECT_EQ(lines.mid(1), QStringList({"-", "打开仪表盘", "设置…", "立即刷新", "-", "退出 Quillmeter"}));
  for (const int id : {3, 1, quit}) {
    desktop_.callItem(menuPath, menuInterface, "Event",
                      {id, "clicked", QVariant::fromValue(QDBusVariant(0)), QVariant::fromValue(0U)});
  }
  EXPECT_TRUE(waitFor([this] { return services_.actions.asked.size() == 2; }));
  EXPECT_EQ(services_.actions.asked, (std::vector<std::string>{"dashboard", "quit"}));
  int layouts = 0;
  desktop_.countSignal(menuPath, menuInterface, "LayoutUpdated", layouts);
  services_.useLanguage("en");
  item_->retranslate();
  EXPECT_TRUE(waitFor([&layouts] { return layouts == 1; }));
  services_.useLanguage("zh-Hans");
}

TEST_F(Tray, aPanelThatComesLateVanishesAndReturnsIsFollowed) {
  show();
  EXPECT_FALSE(item_->isAvailable());
  EXPECT_TRUE(availability_.empty());
  desktop_.startWatcher();
  ASSERT_TRUE(waitFor([this] { return item_->isAvailable() && desktop_.registrations() == 1; }));
  desktop_.endWatcher();
  ASSERT_TRUE(waitFor([this] { return services_.timers.running().size() > 0; }));
  services_.advance(1);
  EXPECT_TRUE(item_->isAvailable()) << "a panel that restarts";
  desktop_.startWatcher();
  ASSERT_TRUE(waitFor([this] { return desktop_.registrations() == 1; })) << "with the new one";
  services_.advance(10);
  EXPECT_EQ(availability_, std::vector{true});
  desktop_.endWatcher();
  ASSERT_TRUE(waitFor([this] {
    services_.advance(1);
    return !item_->isAvailable();
  }));
  EXPECT_EQ(availability_, (std::vector{true, false}));
}

TEST_F(Tray, anX11TrayShowsTheItemAndPassesClicksOn) {
  desktop_.startTrayer();
  show();
  ASSERT_TRUE(waitFor([] { return isDocked(); }));
  EXPECT_TRUE(item_->isAvailable());
  click(1);
  ASSERT_TRUE(waitFor([this] { return opened_.size() == 1; }));
  EXPECT_TRUE(opened_.front().contains(embedded()->mapToGlobal(embedded()->rect().center())));
  click(2);
  EXPECT_TRUE(waitFor([this] { return refreshes_ == 1; }));
  click(3);
  ASSERT_TRUE(waitFor([] { return QApplication::activePopupWidget() != nullptr; }));
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 7);
  EXPECT_FALSE(menu->actions().front()->isEnabled());
  menu->actions()[3]->trigger();
  EXPECT_EQ(services_.actions.asked, std::vector<std::string>{"settings"});
  menu->close();
}

TEST_F(Tray, anX11TrayIsFollowedAndPaintsOnlyWhatChanged) {
  show();
  EXPECT_FALSE(item_->isAvailable());
  for (int round = 0; round < 2; ++round) {
    desktop_.startTrayer();
    ASSERT_TRUE(waitFor([this] { return item_->isAvailable() && isDocked(); })) << round;
    embedded()->repaint();
    const int painted = item_->paintCount();
    for (int i = 0; i < 10; ++i) services_.advance(2);
    QApplication::processEvents();
    EXPECT_EQ(item_->paintCount(), painted);
    desktop_.endTrayer();
    ASSERT_TRUE(waitFor([this] {
      services_.advance(1);
      return !item_->isAvailable();
    })) << round;
  }
}

TEST_F(Tray, thePanelOnTheBusIsPreferredAndTheX11TrayTakesOver) {
  desktop_.startTrayer();
  show();
  ASSERT_TRUE(waitFor([] { return embedded() != nullptr; }));
  desktop_.startWatcher();
  ASSERT_TRUE(waitFor([this] { return desktop_.registrations() == 1; }));
  EXPECT_EQ(embedded(), nullptr);
  desktop_.endWatcher();
  EXPECT_TRUE(waitFor([] { return embedded() != nullptr; }));
  EXPECT_EQ(availability_, std::vector{true}) << "there was always one";
}

}  // namespace

}  // namespace quillmeter
