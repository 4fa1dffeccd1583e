#include "quickstatus/QuickAudioHardware.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "platform/fake/FakeAudioHardware.h"

namespace quillmeter {
namespace {

AudioOutputFacts stereoWithoutMain() {
  return {.id = 7, .name = "Old card", .channelVolumes = {0.8, 0.4}, .canSetChannelVolumes = true};
}

TEST(QuickAudioHardware, readsTheDefaultDeviceAndClampsAnAmplifiedVolume) {
  FakeAudioHardware server;
  server.facts.outputs = {{.id = 3,
                           .name = "Speakers",
                           .transport = "bltn",
                           .mainVolume = 1.4,
                           .canSetMainVolume = true,
                           .mainBalance = 0.25,
                           .canSetMainBalance = true,
                           .muted = true,
                           .canSetMute = true},
                          stereoWithoutMain()};
  server.facts.defaultOutput = 3;
  QuickStatusSnapshot snapshot;
  QuickAudioHardware(server).read(snapshot);
  EXPECT_EQ(snapshot.outputs.size(), 2U);
  EXPECT_EQ(snapshot.output->name, "Speakers");
  EXPECT_EQ(snapshot.volume, 1.0);
  EXPECT_EQ(snapshot.balance, 0.25);
  EXPECT_EQ(snapshot.muted, true);
  EXPECT_TRUE(snapshot.canSetVolume && snapshot.canSetBalance && snapshot.canSetMute);
  EXPECT_EQ(server.facts.outputs[0].mainVolume, 1.4) << "reading lowers nothing";
}

TEST(QuickAudioHardware, aDeviceWithoutMainControlsIsReadAndSetByItsChannels) {
  FakeAudioHardware server;
  server.facts = {{stereoWithoutMain()}, 7};
  QuickAudioHardware hardware(server);
  QuickStatusSnapshot snapshot;
  hardware.read(snapshot);
  EXPECT_DOUBLE_EQ(*snapshot.volume, 0.6);
  EXPECT_DOUBLE_EQ(*snapshot.balance, 0.25);
  EXPECT_FALSE(snapshot.muted);
  EXPECT_FALSE(snapshot.canSetMute);
  EXPECT_FALSE(hardware.toggleMute());
  ASSERT_TRUE(hardware.setBalance(0.75, 7));
  EXPECT_EQ(server.facts.outputs[0].channelVolumes, (std::vector<double>{0.4, 0.8}));
  ASSERT_TRUE(hardware.setVolume(2));
  EXPECT_EQ(server.facts.outputs[0].channelVolumes, (std::vector<double>{1, 1}));
}

TEST(QuickAudioHardware, refusesWhatNoDeviceCanTake) {
  FakeAudioHardware server;
  QuickAudioHardware hardware(server);
  EXPECT_FALSE(hardware.setVolume(0.5)) << "no server";
  server.facts = {{{.id = 1, .name = "Digital", .channelVolumes = {1}}}, 1};
  QuickStatusSnapshot snapshot;
  hardware.read(snapshot);
  EXPECT_FALSE(snapshot.canSetVolume) << "controlled by the hardware";
  EXPECT_FALSE(snapshot.balance) << "mono";
  EXPECT_FALSE(hardware.setVolume(0.5));
  EXPECT_FALSE(hardware.setBalance(0.5, 1));
  EXPECT_FALSE(hardware.setVolume(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(hardware.selectOutput(99));
  server.facts.defaultOutput = 42;  // vanished between two answers of the server
  QuickStatusSnapshot gone;
  hardware.read(gone);
  EXPECT_FALSE(gone.output);
}

TEST(QuickAudioHardware, theBalanceLeansToTheLouderSide) {
  EXPECT_EQ(QuickAudioHardware::balanceValue(0, 0), 0.5);
  EXPECT_EQ(QuickAudioHardware::balanceValue(0.3, 0.3), 0.5);
  EXPECT_EQ(QuickAudioHardware::balanceValue(1, 0), 0.0);
  EXPECT_EQ(QuickAudioHardware::balanceValue(0, 0.2), 1.0);
}

TEST(QuickAudioDevice, showsWhatKindOfDeviceItIs) {
  struct Case {
    QuickAudioDevice device;
    std::string_view symbol;
  };
  const Case cases[] = {{{1, "Ann's AirPods Pro", "blue", "headset"}, "airpods"},
                        {{1, "BT Headset", "blue", ""}, "headphones"},
                        {{1, "WH-1000", "blea", ""}, "headphones"},
                        {{1, "Boombox", "blue", "portable"}, "hifispeaker.fill"},
                        {{1, "GPU", "hdmi", ""}, "tv"},
                        {{1, "Built-in", "bltn", "internal"}, "speaker.wave.2.fill"},
                        {{1, "Null", "virt", ""}, "waveform"},
                        {{1, "?", "", ""}, "speaker.wave.2.fill"}};
  for (const Case& c : cases) EXPECT_EQ(c.device.symbol(), c.symbol) << c.device.name;
  EXPECT_TRUE((QuickAudioDevice{1, "x", "blea", ""}.isBluetooth()));
  EXPECT_FALSE((QuickAudioDevice{1, "x", "usb ", ""}.isBluetooth()));
}

}  // namespace
}  // namespace quillmeter
