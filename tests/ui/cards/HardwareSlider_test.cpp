#include "ui/cards/HardwareSlider.h"

#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fake/ManualTimerFactory.h"

namespace quillmeter {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HardwareSliderTest : public testing::Test {
 protected:
  HardwareSliderTest() {
    slider_->setSend([this](double value) { sent_.push_back(value); });
    slider_->showHardware(0.5, false, false);
  }
  ManualTimerFactory timers_;
  std::vector<double> sent_;
  std::unique_ptr<HardwareSlider> slider_ = std::make_unique<HardwareSlider>(timers_, nullptr);
};

TEST_F(HardwareSliderTest, sendsTheFirstMoveAtOnceAndThenOnlyTheNewestOfEachPause) {
  EXPECT_THAT(sent_, IsEmpty()) << "what the hardware says is not sent back";
  for (const int value : {51, 52, 53, 60}) slider_->setValue(value);
  EXPECT_THAT(sent_, ElementsAre(0.51));
  timers_.advance(HardwareSlider::sendSeconds);
  EXPECT_THAT(sent_, ElementsAre(0.51, 0.60));
  timers_.advance(10);
  EXPECT_THAT(sent_, ElementsAre(0.51, 0.60));
}

TEST_F(HardwareSliderTest, theLastValueArrivesAlsoWhenItIsClosedMeanwhile) {
  slider_->setValue(60);
  slider_->setValue(70);
  slider_.reset();
  EXPECT_THAT(sent_, ElementsAre(0.60, 0.70));
}

TEST_F(HardwareSliderTest, aValueForOneDeviceIsNotSentToTheNext) {
  std::vector<double> sentToNext;
  slider_->setValue(60);
  slider_->setValue(70);
  slider_->setSend([&sentToNext](double value) { sentToNext.push_back(value); });
  timers_.advance(1);
  EXPECT_THAT(sent_, ElementsAre(0.60, 0.70));
  EXPECT_THAT(sentToNext, IsEmpty());
}

TEST_F(HardwareSliderTest, theHandleStaysWithTheUserUntilTheHardwareFollows) {
  slider_->setSliderDown(true);
  slider_->setValue(80);
  slider_->showHardware(0.2, false, false);
  EXPECT_EQ(slider_->value(), 80) << "while it is held";
  slider_->setSliderDown(false);
  slider_->showHardware(0.2, true, false);
  slider_->showHardware(0.2, false, false);
  EXPECT_EQ(slider_->value(), 80) << "while the change is under way and its effect has not been read";
  slider_->showHardware(0.79, false, false);
  EXPECT_EQ(slider_->value(), 79);
  slider_->showHardware(0.3, false, false);
  EXPECT_EQ(slider_->value(), 30) << "changed elsewhere";
}

TEST_F(HardwareSliderTest, theHandleReturnsWhereAChangeHadNoEffect) {
  slider_->setValue(80);
  slider_->showHardware(0.5, true, false);
  slider_->showHardware(0.5, false, true);
  EXPECT_EQ(slider_->value(), 50) << "refused";
  slider_->setValue(90);
  timers_.advance(HardwareSlider::sendSeconds + HardwareSlider::settleSeconds);
  EXPECT_EQ(slider_->value(), 50) << "nothing came of it";
  EXPECT_TRUE(timers_.running().empty());
}

}  // namespace
}  // namespace quillmeter
