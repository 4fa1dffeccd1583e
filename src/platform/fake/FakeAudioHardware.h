#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/AudioHardware.h"

namespace quillmeter {

// A sound server of memory. Records what it was asked to change and can refuse it.
class FakeAudioHardware final : public AudioHardware {
 public:
  AudioFacts read() override {
    ++reads;
    return facts;
  }
  bool setVolume(std::uint32_t output, double volume) override {
    return change(output, [&](AudioOutputFacts& device) { device.mainVolume = volume; });
  }
  bool setChannelVolumes(std::uint32_t output, const std::vector<double>& volumes) override {
    return change(output, [&](AudioOutputFacts& device) { device.channelVolumes = volumes; });
  }
  bool setBalance(std::uint32_t output, double balance) override {
    return change(output, [&](AudioOutputFacts& device) { device.mainBalance = balance; });
  }
  bool setMuted(std::uint32_t output, bool muted) override {
    return change(output, [&](AudioOutputFacts& device) { device.muted = muted; });
  }
  bool setDefaultOutput(std::uint32_t output) override {
    return change(output, [&](AudioOutputFacts&) { facts.defaultOutput = output; });
  }
  void onChange(std::function<void()> function) override { changed = std::move(function); }

  AudioFacts facts;
  bool refuses = false;
  int reads = 0;
  std::function<void()> changed;

 private:
  bool change(std::uint32_t output, const std::function<void(AudioOutputFacts&)>& apply) {
    const auto found = std::ranges::find(facts.outputs, output, &AudioOutputFacts::id);
    if (refuses || found == facts.outputs.end()) return false;
    apply(*found);
    return true;
  }
};

}  // namespace quillmeter
