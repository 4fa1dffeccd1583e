#include "quickstatus/QuickAudioHardware.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

namespace quillmeter {

namespace {

const AudioOutputFacts* find(const AudioFacts& facts, std::optional<std::uint32_t> id) {
  if (!id) return nullptr;
  const auto found = std::ranges::find(facts.outputs, *id, &AudioOutputFacts::id);
  return found == facts.outputs.end() ? nullptr : &*found;
}

QuickAudioDevice deviceOf(const AudioOutputFacts& facts) {
  return {facts.id, facts.name, facts.transport, facts.formFactor};
}

bool hasStereoPair(const AudioOutputFacts& facts) {
  return facts.channelVolumes.size() >= 2;
}

// An amplified device shows as full; that reads no lower than it is set.
std::optional<double> volumeOf(const AudioOutputFacts& facts) {
  double volume = 0;
  if (facts.mainVolume) {
    volume = *facts.mainVolume;
  } else if (!facts.channelVolumes.empty()) {
    const std::size_t count = std::min<std::size_t>(facts.channelVolumes.size(), 2);
    volume = std::accumulate(facts.channelVolumes.begin(),
                             facts.channelVolumes.begin() + static_cast<std::ptrdiff_t>(count), 0.0) /
             static_cast<double>(count);
  } else {
    return std::nullopt;
  }
  if (!std::isfinite(volume)) return std::nullopt;
  return std::clamp(volume, 0.0, 1.0);
}

std::optional<double> balanceOf(const AudioOutputFacts& facts) {
  if (facts.mainBalance) return std::clamp(*facts.mainBalance, 0.0, 1.0);
  if (!hasStereoPair(facts)) return std::nullopt;
  return QuickAudioHardware::balanceValue(facts.channelVolumes[0], facts.channelVolumes[1]);
}

}  // namespace

double QuickAudioHardware::balanceValue(double left, double right) {
  if (left == right) return 0.5;
  return left > right ? 0.5 * right / left : 1 - 0.5 * left / right;
}

void QuickAudioHardware::read(QuickStatusSnapshot& snapshot) {
  const AudioFacts facts = hardware_.read();
  snapshot.outputs.clear();
  for (const AudioOutputFacts& output : facts.outputs) snapshot.outputs.push_back(deviceOf(output));
  const AudioOutputFacts* current = find(facts, facts.defaultOutput);
  if (current == nullptr) return;
  snapshot.output = deviceOf(*current);
  snapshot.volume = volumeOf(*current);
  snapshot.balance = balanceOf(*current);
  snapshot.canSetVolume = current->canSetMainVolume || current->canSetChannelVolumes;
  snapshot.canSetBalance = current->canSetMainBalance || (hasStereoPair(*current) && current->canSetChannelVolumes);
  snapshot.muted = current->muted;
  snapshot.canSetMute = current->canSetMute && current->muted.has_value();
}

bool QuickAudioHardware::setVolume(double volume) {
  if (!std::isfinite(volume)) return false;
  const AudioFacts facts = hardware_.read();
  const AudioOutputFacts* current = find(facts, facts.defaultOutput);
  if (current == nullptr) return false;
  volume = std::clamp(volume, 0.0, 1.0);
  if (current->canSetMainVolume) return hardware_.setVolume(current->id, volume);
  if (!current->canSetChannelVolumes) return false;
  return hardware_.setChannelVolumes(current->id, std::vector<double>(current->channelVolumes.size(), volume));
}

bool QuickAudioHardware::setBalance(double balance, std::uint32_t deviceID) {
  if (!std::isfinite(balance)) return false;
  const AudioFacts facts = hardware_.read();
  const AudioOutputFacts* device = find(facts, deviceID);
  if (device == nullptr) return false;
  balance = std::clamp(balance, 0.0, 1.0);
  if (device->canSetMainBalance) return hardware_.setBalance(deviceID, balance);
  if (!device->canSetChannelVolumes || !hasStereoPair(*device)) return false;
  std::vector<double> volumes = device->channelVolumes;
  const double louder = std::max(volumes[0], volumes[1]);
  volumes[0] = louder * std::min(1.0, 2 * (1 - balance));
  volumes[1] = louder * std::min(1.0, 2 * balance);
  return hardware_.setChannelVolumes(deviceID, volumes);
}

bool QuickAudioHardware::toggleMute() {
  const AudioFacts facts = hardware_.read();
  const AudioOutputFacts* current = find(facts, facts.defaultOutput);
  if (current == nullptr || !current->canSetMute || !current->muted) return false;
  return hardware_.setMuted(current->id, !*current->muted);
}

bool QuickAudioHardware::selectOutput(std::uint32_t deviceID) {
  return hardware_.setDefaultOutput(deviceID);
}

}  // namespace quillmeter
