#pragma once

#include <cstdint>

#include "platform/AudioHardware.h"
#include "quickstatus/model/QuickStatusSnapshot.h"

namespace quillmeter {

// What the facts of the sound server mean for the cards, and how a change is put to a device. Stateless but for the
// server it asks; used on the quick-status queue.
class QuickAudioHardware {
 public:
  explicit QuickAudioHardware(AudioHardware& hardware) : hardware_(hardware) {}

  // Fills the audio part of `snapshot`.
  void read(QuickStatusSnapshot& snapshot);

  // Each gives whether the device took the change. Values outside 0 ... 1 are clamped, those that are no number
  // refused.
  bool setVolume(double volume);
  bool setBalance(double balance, std::uint32_t deviceID);
  bool toggleMute();
  bool selectOutput(std::uint32_t deviceID);

  // 0.5 when both sides are equal, else leaning towards the louder one.
  static double balanceValue(double left, double right);

 private:
  AudioHardware& hardware_;
};

}  // namespace quillmeter
