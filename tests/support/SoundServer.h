#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "support/PrivateBus.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// A PulseAudio daemon of the test's own (packages pulseaudio, pulseaudio-utils) with sinks that lead nowhere: speakers
// of a built-in card, a Bluetooth headset, and one with a single channel.
class SoundServer {
 public:
  SoundServer() {
    folder_.write(
        "pulse.pa",
        "load-module module-null-sink sink_name=speakers sink_properties='device.description=\"Built-in "
        "Speakers\" device.bus=pci device.form_factor=internal'\n"
        "load-module module-null-sink sink_name=bt_headset sink_properties='device.description=\"BT Headset\" "
        "device.bus=bluetooth device.form_factor=headset'\n"
        "load-module module-null-sink sink_name=mono channels=1 channel_map=mono "
        "sink_properties='device.description=\"Mono\"'\n"
        "set-default-sink speakers\n"
        "load-module module-native-protocol-unix auth-anonymous=1 socket=" +
            socketPath().string() + "\n");
    start();
  }
  ~SoundServer() { end(); }

  std::string address() const { return "unix:" + socketPath().string(); }
  int pid() const { return daemon_->pid(); }
  void end() { daemon_.reset(); }

  // Starts it, or starts it again; returns when it takes connections.
  void start() {
    end();
    std::filesystem::remove(socketPath());
    const std::string folder = folder_.path().string();
    daemon_ = std::make_unique<ChildProcess>(std::vector<std::string>{
        "env", "HOME=" + folder, "XDG_CONFIG_HOME=" + folder, "XDG_RUNTIME_DIR=" + folder,
        "PULSE_RUNTIME_PATH=" + folder, "PULSE_STATE_PATH=" + folder, "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent",
        "DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nonexistent", "pulseaudio", "-n", "-F", folder + "/pulse.pa",
        "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "--disallow-exit=yes", "--log-target=null"});
    waitForSocket(socketPath());
  }

  // Runs `pactl` on it and gives what it prints.
  std::string pactl(const std::string& arguments) const { return runPactl(address(), arguments); }

  static std::string runPactl(const std::string& address, const std::string& arguments) {
    FILE* pipe = ::popen(("LC_ALL=C PULSE_SERVER=" + address + " pactl " + arguments).c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot start pactl");
    std::string text;
    for (int letter = std::fgetc(pipe); letter != EOF; letter = std::fgetc(pipe)) text += static_cast<char>(letter);
    if (::pclose(pipe) != 0) throw std::runtime_error("pactl " + arguments + " failed (package pulseaudio-utils)");
    return text;
  }

  static void waitForSocket(const std::filesystem::path& path) {
    constexpr std::time_t patienceSeconds = 30;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    for (const std::time_t start = std::time(nullptr); std::time(nullptr) - start < patienceSeconds; ::usleep(5'000)) {
      const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
      const bool connected = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
      ::close(socket);
      if (connected) return;
    }
    throw std::runtime_error("no sound server at " + path.string() + " (package pulseaudio)");
  }

 private:
  std::filesystem::path socketPath() const { return folder_.path() / "native"; }

  TemporaryDirectory folder_;
  std::unique_ptr<ChildProcess> daemon_;
};

}  // namespace quillmeter::test
