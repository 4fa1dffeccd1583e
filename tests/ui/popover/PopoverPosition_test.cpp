#include "ui/popover/PopoverPosition.h"

#include <gtest/gtest.h>
#include <QSize>

namespace quillmeter {

namespace {

constexpr QSize size(372, 500);
const QRect available(0, 30, 1280, 770);  // below a panel

TEST(PopoverPosition, isCentredBelowAnIconAboveAndAboveAnIconBelow) {
  EXPECT_EQ(popoverPosition(QRect(600, 4, 22, 22), {}, available, size), QPoint(610 - 186, 38));
  const QRect fromTop(0, 0, 1280, 770);
  EXPECT_EQ(popoverPosition(QRect(600, 774, 22, 22), {}, fromTop, size), QPoint(610 - 186, 770 - 8 - 500));
  EXPECT_EQ(popoverPosition(QRect(600, 100, 22, 22), {}, available, size).y(), 128) << "close to the icon";
}

TEST(PopoverPosition, staysWithinTheFreeArea) {
  EXPECT_EQ(popoverPosition(QRect(1270, 4, 10, 22), {}, available, size), QPoint(1280 - 8 - 372, 38));
  EXPECT_EQ(popoverPosition(QRect(0, 4, 10, 22), {}, available, size), QPoint(8, 38));
  const QRect second(1280, 0, 1024, 768);  // another screen
  EXPECT_EQ(popoverPosition(QRect(1282, 740, 22, 22), {}, second, size), QPoint(1288, 740 - 6 - 500));
}

TEST(PopoverPosition, takesThePointerWhereTheIconIsUnknown) {
  EXPECT_EQ(popoverPosition({}, QPoint(640, 15), available, size), QPoint(640 - 186, 38));
  EXPECT_EQ(popoverPosition(QRect(5, 5, 0, 0), QPoint(640, 15), available, size), QPoint(640 - 186, 38));
}

TEST(PopoverPosition, showsItsBeginningWhereThereIsNoRoom) {
  EXPECT_EQ(popoverPosition(QRect(10, 0, 22, 22), {}, QRect(0, 0, 320, 240), size), QPoint(8, 8));
}

}  // namespace

}  // namespace quillmeter
