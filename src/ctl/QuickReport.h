#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctl/Console.h"
#include "platform/AudioHardware.h"
#include "platform/NetworkPathMonitor.h"
#include "platform/WifiClient.h"

namespace quillmeter::ctl {

// "40" or "40%" as 0.4; absent for what is not within 0 ... 100.
std::optional<double> percentageArgument(std::string_view text);

// What `quick` asks and changes.
struct QuickSources {
  WifiClient& wifi;
  AudioHardware& audio;
  NetworkPath path;
};

struct QuickRequest {
  std::string action = "show";  // "volume", "balance", "mute", "output"
  std::string value = {};
  bool json = false;
};

// Makes the change, if one is asked for, and prints how things stand.
[[nodiscard]] ExitCode runQuick(Console& console, const QuickSources& sources, const QuickRequest& request);

}  // namespace quillmeter::ctl
