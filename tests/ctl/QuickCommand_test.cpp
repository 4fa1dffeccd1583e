#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ctl/QuickReport.h"
#include "ctl/ToolRun.h"
#include "platform/fake/FakeAudioHardware.h"
#include "support/SoundServer.h"

namespace quillmeter::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class QuickCommandTest : public testing::Test {
 protected:
  QuickCommandTest() { tool.environment["PULSE_SERVER"] = server.address(); }
  nlohmann::json status() const {
    const ToolResult result = tool.run({"quick", "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    return nlohmann::json::parse(result.out, nullptr, false);
  }

  SoundServer server;
  ToolRun tool;
};

TEST_F(QuickCommandTest, showsAndChangesARealSoundServer) {
  EXPECT_THAT(tool.run({"quick"}).out, AllOf(HasSubstr("Built-in Speakers"), HasSubstr("100%"), HasSubstr("居中")));
  const ToolResult turnedDown = tool.run({"quick", "volume", "40%", "--language", "en"});
  EXPECT_EQ(turnedDown.status, 0) << turnedDown.err;
  EXPECT_THAT(turnedDown.out, HasSubstr("Volume         40%"));
  EXPECT_EQ(tool.run({"quick", "balance", "25"}).status, 0);
  EXPECT_EQ(tool.run({"quick", "mute"}).status, 0);
  EXPECT_THAT(server.pactl("get-sink-volume speakers"), AllOf(HasSubstr(" 40% "), HasSubstr("balance -0.50")));
  EXPECT_THAT(server.pactl("get-sink-mute speakers"), HasSubstr("yes"));
  auto json = status();
  EXPECT_NEAR(json.value("volume", 0.0), 0.4, 0.01);
  EXPECT_NEAR(json.value("balance", 0.0), 0.25, 0.01);
  EXPECT_EQ(json.value("muted", false), true);
  EXPECT_EQ(json.at("output").value("transport", ""), "bltn");
  EXPECT_EQ(json.at("outputs").size(), 3U);
  EXPECT_EQ(json.count("wifiRSSI"), json.count("wifiRate")) << "what is unknown is left out";

  EXPECT_EQ(tool.run({"quick", "output", "headset"}).status, 0);
  EXPECT_THAT(server.pactl("get-default-sink"), HasSubstr("bt_headset"));
  EXPECT_EQ(status().at("output").value("isBluetooth", false), true);
}

TEST_F(QuickCommandTest, saysWhyAChangeDoesNotHappen) {
  struct Case {
    std::vector<std::string> arguments;
    int status;
    const char* sentence;
  };
  ASSERT_EQ(tool.run({"quick", "output", "Mono"}).status, 0);
  const Case cases[] = {{{"quick", "balance", "20"}, 1, "此设备不支持声道平衡"},
                        {{"quick", "output", "gramophone"}, 1, "没有“gramophone”这个输出设备"},
                        {{"quick", "output", "e"}, 1, "“e”不止一个"},
                        {{"quick", "output"}, 2, "请给出输出设备的名称"},
                        {{"quick", "volume", "101"}, 2, "“101”不是 0 到 100 的数"},
                        {{"quick", "volume", "nan"}, 2, "不是 0 到 100 的数"},
                        {{"quick", "volume"}, 2, "不是 0 到 100 的数"},
                        {{"quick", "louder"}, 2, "louder"}};
  for (const Case& c : cases) {
    const ToolResult result = tool.run(c.arguments);
    EXPECT_EQ(result.status, c.status) << c.sentence;
    EXPECT_THAT(result.err, HasSubstr(c.sentence));
    EXPECT_EQ(result.out, "");
  }
}

TEST_F(QuickCommandTest, withoutASoundServerThereIsNoOutput) {
  server.end();
  const auto json = status();
  EXPECT_EQ(json.at("outputs").size(), 0U);
  EXPECT_FALSE(json.contains("volume"));
  EXPECT_FALSE(json.value("canSetVolume", true));
  const ToolResult mute = tool.run({"quick", "mute"});
  EXPECT_EQ(mute.status, 1);
  EXPECT_THAT(mute.err, HasSubstr("没有声音输出设备"));
}

TEST(QuickReport, aDeviceThatRefusesGivesTheSentenceForIt) {
  class NoWifi final : public WifiClient {
    WifiFacts read() override { return {.powered = true, .rssi = -52, .transmitRate = 866.7}; }
  } wifi;
  FakeAudioHardware audio;
  audio.facts = {{{.id = 1, .name = "Digital", .mainVolume = 1.0, .canSetMainVolume = true}}, 1};
  audio.refuses = true;
  ctl::Console console(1, 2);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ctl::runQuick(console, {wifi, audio, {}}, {.action = "volume", .value = "30"}), ctl::ExitCode::couldNot);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("设备未接受更改，请在系统声音设置中重试。"));
  audio.facts.outputs[0].canSetMainVolume = false;
  testing::internal::CaptureStdout();
  EXPECT_EQ(ctl::runQuick(console, {wifi, audio, {}}, {}), ctl::ExitCode::done);
  console.flush();
  EXPECT_THAT(testing::internal::GetCapturedStdout(),
              AllOf(HasSubstr("网络未连接"), HasSubstr("-52 dBm  867 Mbit/s"), HasSubstr("此设备的音量由硬件控制。")));
}

}  // namespace
}  // namespace quillmeter::test
