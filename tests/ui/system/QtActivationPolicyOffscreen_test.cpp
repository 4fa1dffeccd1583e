#include <gtest/gtest.h>

#include "ui/system/QtActivationPolicy.h"

namespace quillmeter {
namespace {

TEST(QtActivationPolicy, refusesToHideWhereWindowsAreAlwaysListed) {
  QtActivationPolicy policy;
  EXPECT_FALSE(policy.setListed(false));
  EXPECT_TRUE(policy.setListed(true));
}

}  // namespace
}  // namespace quillmeter
