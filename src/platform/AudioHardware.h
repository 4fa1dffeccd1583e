#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmeter {

// One sound output as the sound server knows it. Volumes are 0 ... 1 of the device's own scale, 1 being unamplified; a
// server may give more.
struct AudioOutputFacts {
  std::uint32_t id = 0;
  std::string name;        // for people
  std::string transport;   // four characters: "bltn", "blue", "blea", "usb ", "hdmi", "virt", "pci ", "airp", "grup";
                           // empty: unknown
  std::string formFactor;  // "headphone", "headset", "speaker", "internal", "tv", ...; empty: unknown
  std::optional<double> mainVolume;
  bool canSetMainVolume = false;
  std::vector<double> channelVolumes;  // left and right first where there are both
  bool canSetChannelVolumes = false;
  std::optional<double> mainBalance;  // 0 left ... 0.5 centre ... 1 right
  bool canSetMainBalance = false;
  std::optional<bool> muted;
  bool canSetMute = false;
  friend bool operator==(const AudioOutputFacts&, const AudioOutputFacts&) = default;
};

struct AudioFacts {
  std::vector<AudioOutputFacts> outputs;
  std::optional<std::uint32_t> defaultOutput;
  friend bool operator==(const AudioFacts&, const AudioFacts&) = default;
};

// The sound server. Read and changed on the quick-status queue only; each call is bounded in time and fails when there
// is no server.
class AudioHardware {
 public:
  virtual ~AudioHardware() = default;
  // No outputs when there is no server.
  virtual AudioFacts read() = 0;
  // False when the server or the device does not take the change. A volume keeps the balance, and the reverse.
  virtual bool setVolume(std::uint32_t output, double volume) = 0;
  virtual bool setChannelVolumes(std::uint32_t output, const std::vector<double>& volumes) = 0;
  virtual bool setBalance(std::uint32_t output, double balance) = 0;
  virtual bool setMuted(std::uint32_t output, bool muted) = 0;
  virtual bool setDefaultOutput(std::uint32_t output) = 0;
  // `changed` is called, on any thread, after outputs, their state or the default changed, by whomever. One function at
  // a time.
  virtual void onChange(std::function<void()> changed) = 0;
};

}  // namespace quillmeter
