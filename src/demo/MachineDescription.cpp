#include "demo/MachineDescription.h"

namespace quillmeter {

AudioFacts MachineDescription::defaultAudio() {
  const AudioOutputFacts speakers{.id = 1,
                                  .name = "Built-in Speakers",
                                  .transport = "bltn",
                                  .formFactor = "internal",
                                  .mainVolume = 0.62,
                                  .canSetMainVolume = true,
                                  .channelVolumes = {0.62, 0.62},
                                  .canSetChannelVolumes = true,
                                  .mainBalance = 0.5,
                                  .canSetMainBalance = true,
                                  .muted = false,
                                  .canSetMute = true};
  AudioOutputFacts headset = speakers;
  headset.id = 2;
  headset.name = "WH-1000 Headset";
  headset.transport = "blue";
  headset.formFactor = "headset";
  return {{speakers, headset}, 1};
}

}  // namespace quillmeter
