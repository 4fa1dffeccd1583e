#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Clock.h"
#include "platform/linux/audio/PulseAudioHardware.h"
#include "support/PrivateBus.h"
#include "support/SoundServer.h"

namespace quillmeter {
namespace {

using testing::HasSubstr;

bool isInstalled(const std::string& program) {
  return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
}

// PipeWire with its session manager and its PulseAudio service, all of the test's own.
class PipeWireServer {
 public:
  PipeWireServer() {
    ::chmod(folder_.path().c_str(), 0700);
    pipewire_.emplace(arguments("pipewire"));
    test::SoundServer::waitForSocket(folder_.path() / "pipewire-0");
    sessionManager_.emplace(arguments("wireplumber"));
    pulse_.emplace(arguments("pipewire-pulse"));
    test::SoundServer::waitForSocket(folder_.path() / "pulse/native");
  }
  std::string address() const { return "unix:" + (folder_.path() / "pulse/native").string(); }

 private:
  std::vector<std::string> arguments(const std::string& program) const {
    const std::string folder = folder_.path().string();
    return {"env",
            "HOME=" + folder,
            "XDG_RUNTIME_DIR=" + folder,
            "XDG_STATE_HOME=" + folder + "/state",
            "XDG_CONFIG_HOME=" + folder + "/config",
            program};
  }

  test::TemporaryDirectory folder_;
  test::PrivateBus bus_;
  std::optional<test::ChildProcess> pipewire_;
  std::optional<test::ChildProcess> sessionManager_;
  std::optional<test::ChildProcess> pulse_;
};

TEST(PipeWire, itsPulseAudioServiceIsReadAndChangedAsAServerIs) {
  for (const char* program : {"pipewire", "wireplumber", "pipewire-pulse"}) {
    if (!isInstalled(program)) GTEST_SKIP() << program << " is not installed";
  }
  const PipeWireServer server;
  test::SoundServer::runPactl(server.address(),
                              "load-module module-null-sink sink_name=headset "
                              "sink_properties=device.bus=bluetooth");
  const SystemMonotonicClock clock;
  PulseAudioHardware hardware(clock, {.serverAddress = server.address(), .patienceSeconds = 30});
  AudioFacts facts = hardware.read();
  // The session manager brings a sink of its own as long as there is no other.
  std::optional<AudioOutputFacts> headset;
  for (const AudioOutputFacts& output : facts.outputs) {
    if (output.transport == "blue") headset = output;
  }
  ASSERT_TRUE(headset) << facts.outputs.size() << " outputs";
  ASSERT_TRUE(hardware.setVolume(headset->id, 0.4));
  ASSERT_TRUE(hardware.setMuted(headset->id, true));
  EXPECT_THAT(test::SoundServer::runPactl(server.address(), "get-sink-volume headset"), HasSubstr(" 40% "));
  EXPECT_THAT(test::SoundServer::runPactl(server.address(), "get-sink-mute headset"), HasSubstr("yes"));
  // The session manager, which decides on the default, may still be starting.
  const std::time_t start = std::time(nullptr);
  while (!hardware.setDefaultOutput(headset->id) && std::time(nullptr) - start < 30) ::usleep(5'000);
  EXPECT_TRUE(hardware.setDefaultOutput(headset->id));
  EXPECT_FALSE(hardware.setVolume(4'000'000, 0.4));
}

}  // namespace
}  // namespace quillmeter
