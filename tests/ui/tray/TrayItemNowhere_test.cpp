#include <gtest/gtest.h>
#include <QApplication>
#include <QRect>

#include "demo/FakeServices.h"
#include "platform/fake/FakeDesktop.h"
#include "ui/theme/Theme.h"
#include "ui/tray/TrayItem.h"

namespace quillmeter {

namespace {

TEST(TrayItem, withoutMessageBusAndXServerThereIsNoTrayAndNothingIsPainted) {
  FakeServices services;
  FakeDesktopAppearance appearance;
  Theme theme(*qApp, services.preferences, appearance);
  int told = 0;
  TrayItem item(services.ui, theme,
                {.togglePopover = [](const QRect&) {}, .refresh = [] {}, .availabilityChanged = [&](bool) { ++told; }});
  item.show();
  item.show();
  services.start();
  services.description.battery->percent = 10;
  services.advance(30);
  item.retranslate();
  EXPECT_FALSE(item.isAvailable());
  EXPECT_EQ(item.paintCount(), 0);
  EXPECT_EQ(told, 0);
}

}  // namespace

}  // namespace quillmeter
