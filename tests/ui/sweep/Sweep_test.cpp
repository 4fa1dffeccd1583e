#include <gtest/gtest.h>
#include <QApplication>
#include <QFontDatabase>
TEST(Sweep, theTestsHaveAFontForChinese) {
  EXPECT_FALSE(QFontDatabase::families(QFontDatabase::SimplifiedChinese).isEmpty()) << "package fonts-wqy-microhei";
}
