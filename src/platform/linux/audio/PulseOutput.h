#pragma once

#include <cstddef>
#include <vector>

#include "platform/AudioHardware.h"

struct pa_sink_info;

namespace quillmeter {

// What a sink of the sound server is as an output. Volumes are parts of the unamplified one on the scale that desktops
// show (a half is not half the amplitude). Channel volumes, left and right first, and the balance are given where the
// sink has both sides.
AudioOutputFacts audioOutputFacts(const pa_sink_info& sink);

// Which of the sink's channels the channel volumes stand for, one after another.
std::vector<std::size_t> outputChannelOrder(const pa_sink_info& sink);

}  // namespace quillmeter
