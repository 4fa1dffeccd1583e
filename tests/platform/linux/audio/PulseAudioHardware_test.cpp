#include "platform/linux/audio/PulseAudioHardware.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fake/ManualClock.h"
#include "support/SoundServer.h"

namespace quillmeter {
namespace {

using testing::HasSubstr;

constexpr double stepOfHalfAPercent = 0.005;

// Counts the announcements, and waits for one.
class Announcements {
 public:
  explicit Announcements(PulseAudioHardware& hardware) {
    hardware.onChange([this] {
      const std::lock_guard lock(mutex_);
      ++count_;
      changed_.notify_all();
    });
  }
  bool wait() {
    std::unique_lock lock(mutex_);
    const bool came = changed_.wait_for(lock, std::chrono::seconds(30), [this] { return count_ > 0; });
    count_ = 0;
    return came;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int count_ = 0;
};

class PulseAudioHardwareTest : public testing::Test {
 protected:
  AudioOutputFacts output(const std::string& name) {
    const AudioFacts facts = hardware.read();
    for (const AudioOutputFacts& output : facts.outputs) {
      if (output.name == name) return output;
    }
    ADD_FAILURE() << "no output called " << name;
    return {};
  }
  static std::ptrdiff_t openDescriptors() {
    const std::filesystem::directory_iterator list("/proc/self/fd");
    return std::distance(begin(list), end(list));
  }

  test::SoundServer server;
  ManualMonotonicClock clock;
  PulseAudioHardware hardware{clock, {.serverAddress = server.address(), .patienceSeconds = 30}};
  Announcements announcements{hardware};
};

TEST_F(PulseAudioHardwareTest, readsTheOutputsAndWhatTheyAre) {
  const AudioFacts facts = hardware.read();
  ASSERT_EQ(facts.outputs.size(), 3U);
  const AudioOutputFacts speakers = output("Built-in Speakers");
  EXPECT_EQ(facts.defaultOutput, speakers.id);
  EXPECT_EQ(speakers.transport, "bltn");
  EXPECT_EQ(speakers.formFactor, "internal");
  EXPECT_EQ(speakers.mainVolume, 1.0);
  EXPECT_EQ(speakers.mainBalance, 0.5);
  EXPECT_EQ(speakers.muted, false);
  EXPECT_TRUE(speakers.canSetMainVolume && speakers.canSetMainBalance && speakers.canSetMute);
  EXPECT_EQ(output("BT Headset").transport, "blue");
  EXPECT_EQ(output("BT Headset").formFactor, "headset");
  const AudioOutputFacts mono = output("Mono");
  EXPECT_EQ(mono.transport, "virt");
  EXPECT_TRUE(mono.canSetMainVolume);
  EXPECT_FALSE(mono.canSetMainBalance || mono.mainBalance || !mono.channelVolumes.empty());
  EXPECT_FALSE(hardware.setBalance(mono.id, 0.2));
}

TEST_F(PulseAudioHardwareTest, changesReachTheServerAndKeepWhatTheyDoNotConcern) {
  const std::uint32_t speakers = output("Built-in Speakers").id;
  const std::uint32_t headset = output("BT Headset").id;
  ASSERT_TRUE(hardware.setBalance(speakers, 0.25));
  ASSERT_TRUE(hardware.setVolume(speakers, 0.5));
  EXPECT_THAT(server.pactl("get-sink-volume speakers"), HasSubstr("balance -0.50"));
  EXPECT_THAT(server.pactl("get-sink-volume speakers"), HasSubstr(" 50% "));
  ASSERT_TRUE(hardware.setMuted(speakers, true));
  EXPECT_THAT(server.pactl("get-sink-mute speakers"), HasSubstr("yes"));
  ASSERT_TRUE(hardware.setDefaultOutput(headset));
  EXPECT_THAT(server.pactl("get-default-sink"), HasSubstr("bt_headset"));
  const AudioOutputFacts read = output("Built-in Speakers");
  EXPECT_NEAR(*read.mainVolume, 0.5, stepOfHalfAPercent);
  EXPECT_NEAR(*read.mainBalance, 0.25, stepOfHalfAPercent);
  EXPECT_EQ(read.muted, true);
  EXPECT_EQ(hardware.read().defaultOutput, headset);
}

TEST_F(PulseAudioHardwareTest, aVolumeOfNothingKeepsTheBalance) {
  const std::uint32_t speakers = output("Built-in Speakers").id;
  ASSERT_TRUE(hardware.setBalance(speakers, 0.75));
  EXPECT_NEAR(*output("Built-in Speakers").mainBalance, 0.75, stepOfHalfAPercent);
  ASSERT_TRUE(hardware.setVolume(speakers, 0));
  EXPECT_EQ(output("Built-in Speakers").mainVolume, 0.0);
  EXPECT_NEAR(*output("Built-in Speakers").mainBalance, 0.75, stepOfHalfAPercent);
  ASSERT_TRUE(hardware.setBalance(speakers, 0.25));
  EXPECT_NEAR(*output("Built-in Speakers").mainBalance, 0.25, stepOfHalfAPercent);
  ASSERT_TRUE(hardware.setVolume(speakers, 0.8));
  EXPECT_THAT(server.pactl("get-sink-volume speakers"), HasSubstr("balance -0.50"));
}

TEST_F(PulseAudioHardwareTest, anAmplifiedVolumeIsReadAndNotLowered) {
  server.pactl("set-sink-volume speakers 150%");
  EXPECT_NEAR(*output("Built-in Speakers").mainVolume, 1.5, stepOfHalfAPercent);
  EXPECT_THAT(server.pactl("get-sink-volume speakers"), HasSubstr("150%"));
}

TEST_F(PulseAudioHardwareTest, whatOthersChangeIsAnnounced) {
  hardware.read();
  server.pactl("set-sink-volume speakers 30%");
  ASSERT_TRUE(announcements.wait());
  EXPECT_NEAR(*output("Built-in Speakers").mainVolume, 0.3, stepOfHalfAPercent);
  server.pactl("set-default-sink mono");
  ASSERT_TRUE(announcements.wait());
  EXPECT_EQ(hardware.read().defaultOutput, output("Mono").id);
}

TEST_F(PulseAudioHardwareTest, anOutputThatVanishedRefusesChanges) {
  const std::uint32_t headset = output("BT Headset").id;
  server.pactl("unload-module module-null-sink");  // of all sinks; the server makes one of its own or none
  ASSERT_TRUE(announcements.wait());
  EXPECT_FALSE(hardware.setVolume(headset, 0.5));
  EXPECT_FALSE(hardware.setMuted(headset, true));
  EXPECT_FALSE(hardware.setDefaultOutput(headset));
  EXPECT_FALSE(hardware.read().defaultOutput);
}

TEST_F(PulseAudioHardwareTest, channelVolumesHaveLeftAndRightFirst) {
  server.pactl(
      "load-module module-null-sink sink_name=crossed channels=3 "
      "channel_map=front-center,front-right,front-left sink_properties=device.description=Crossed");
  server.pactl("set-sink-volume crossed 10% 20% 30%");
  const AudioOutputFacts crossed = output("Crossed");
  ASSERT_EQ(crossed.channelVolumes.size(), 3U);
  EXPECT_NEAR(crossed.channelVolumes[0], 0.3, stepOfHalfAPercent);
  EXPECT_NEAR(crossed.channelVolumes[1], 0.2, stepOfHalfAPercent);
  EXPECT_NEAR(crossed.channelVolumes[2], 0.1, stepOfHalfAPercent);
  ASSERT_TRUE(hardware.setChannelVolumes(crossed.id, {0.6, 0.5, 0.4}));
  EXPECT_FALSE(hardware.setChannelVolumes(crossed.id, {0.6, 0.5}));
  EXPECT_THAT(server.pactl("get-sink-volume crossed"), HasSubstr("front-left: 39322 /  60%"));
}

TEST_F(PulseAudioHardwareTest, aServerThatReturnsIsUsedAgainAndLeavesNothingBehind) {
  ASSERT_EQ(hardware.read().outputs.size(), 3U);
  const auto descriptors = openDescriptors();
  for (int round = 0; round < 5; ++round) {
    server.end();
    ASSERT_TRUE(announcements.wait()) << "the loss itself is a change";
    EXPECT_TRUE(hardware.read().outputs.empty());
    EXPECT_FALSE(hardware.setVolume(0, 0.5));
    server.start();
    EXPECT_TRUE(hardware.read().outputs.empty()) << "not asked again so soon";
    clock.advance(PulseConnection::longestPauseSeconds);
    ASSERT_EQ(hardware.read().outputs.size(), 3U);
    EXPECT_EQ(openDescriptors(), descriptors);
  }
}

TEST_F(PulseAudioHardwareTest, aServerThatEndsDuringAChangeFailsIt) {
  const std::uint32_t speakers = output("Built-in Speakers").id;
  ASSERT_EQ(::kill(server.pid(), SIGSTOP), 0);
  bool taken = true;
  std::thread change([&] { taken = hardware.setVolume(speakers, 0.5); });
  server.end();
  change.join();
  EXPECT_FALSE(taken);
  EXPECT_TRUE(hardware.read().outputs.empty());
}

TEST_F(PulseAudioHardwareTest, aServerThatHangsIsGivenUpInTime) {
  PulseAudioHardware impatient(clock, {.serverAddress = server.address(), .patienceSeconds = 0.05});
  ASSERT_EQ(::kill(server.pid(), SIGSTOP), 0);
  EXPECT_TRUE(impatient.read().outputs.empty());
  EXPECT_FALSE(impatient.setMuted(0, true));
  ASSERT_EQ(::kill(server.pid(), SIGCONT), 0);
  EXPECT_EQ(hardware.read().outputs.size(), 3U) << "another one has more patience";
}

}  // namespace
}  // namespace quillmeter
