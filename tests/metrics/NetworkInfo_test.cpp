#include "metrics/NetworkInfo.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/fake/FakeMachine.h"
#include "platform/fake/ManualClock.h"

namespace quillmeter {
namespace {

struct NetworkInfoTest : testing::Test {
  NetworkInfoTest() {
    machine.primary = "wlan0";
    machine.interfaces = {{"wlan0", {}, "192.168.1.7"}, {"en0", {5'000, 6'000}, std::nullopt}};
  }
  // One sample `seconds` after the last one, with these counters.
  NetworkSample sampleAfter(double seconds, std::uint64_t received, std::uint64_t sent) {
    clock.advance(seconds);
    machine.interfaces[0].counters = {received, sent};
    return network.sample();
  }
  FakeNetworkInterfaces machine;
  ManualClock clock;
  NetworkInfo network{machine, clock, {}};
};

TEST_F(NetworkInfoTest, theFirstSamplePrimesAndTheSecondMeasures) {
  const auto first = sampleAfter(0, 1'000'000, 500'000);
  EXPECT_EQ(first, (NetworkSample{0, 0, "正在采样", "正在采样", "192.168.1.7"}));
  const auto second = sampleAfter(2, 1'000'000 + 2 * 1'468'006, 500'000 + 2 * 12'288);
  EXPECT_EQ(second, (NetworkSample{12'288, 1'468'006, "12 KB/s", "1.4 MB/s", "192.168.1.7"}));
  EXPECT_EQ(sampleAfter(2, 1'000'000 + 2 * 1'468'006, 500'000 + 2 * 12'288).uploadDescription, "Zero KB/s");
}

TEST_F(NetworkInfoTest, aShortIntervalKeepsTheRatesAndDropsItsBytes) {
  sampleAfter(0, 0, 0);
  EXPECT_EQ(sampleAfter(0.1, 100'000, 0).downloadDescription, "正在采样");
  EXPECT_EQ(sampleAfter(1, 102'048, 0).download, 2'048);
  EXPECT_EQ(sampleAfter(0.1, 900'000, 0).download, 2'048);
  EXPECT_EQ(sampleAfter(0.2, 900'200, 0).download, 1'000);
}

TEST_F(NetworkInfoTest, aClockThatWasSetBackKeepsTheRates) {
  sampleAfter(0, 0, 0);
  EXPECT_EQ(sampleAfter(1, 1'024, 0).download, 1'024);
  EXPECT_EQ(sampleAfter(-3'600, 9'000, 0).download, 1'024);
  EXPECT_EQ(sampleAfter(2, 11'000, 0).download, 1'000);
}

TEST_F(NetworkInfoTest, aCounterThatFellGivesNothingAndOneBeyond32BitsCountsOn) {
  sampleAfter(0, 4'294'967'000, 4'294'967'000);
  const auto sample = sampleAfter(1, 4'294'968'000, 200);
  EXPECT_EQ(sample.upload, 0);
  EXPECT_EQ(sample.download, 1'000);
}

TEST_F(NetworkInfoTest, withoutADefaultRouteTheFallbackNameIsRead) {
  machine.primary.clear();
  network.sample();
  clock.advance(1);
  machine.interfaces[1].counters.sentBytes += 3'000;
  const auto sample = network.sample();
  EXPECT_EQ(sample.upload, 3'000);
  EXPECT_EQ(sample.ipAddress, std::nullopt);

  machine.interfaces.clear();  // nothing matches: counters of 0
  clock.advance(1);
  EXPECT_EQ(network.sample().upload, 0);
}

TEST_F(NetworkInfoTest, anAbsurdRateIsHeldWithinTheCounter) {
  sampleAfter(0, 0, 0);
  const auto sample = sampleAfter(0.2, std::numeric_limits<std::uint64_t>::max(), 1);
  EXPECT_EQ(sample.downloadDescription, "8589934592 GB/s");
}

}  // namespace
}  // namespace quillmeter
