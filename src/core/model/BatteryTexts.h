#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmeter {

// "剩余 01:35" or, while charging, "充满还需 01:35"; "—" when nothing is known. `timeLeft` is Battery's "hh:mm" or "-".
std::string batteryTimeText(std::optional<bool> isCharging, std::string_view timeLeft);

// What the battery does right now, in one word: charging, on battery, charged, or on external power without either.
std::string batteryStateText(std::optional<bool> isCharging, std::optional<bool> isCharged,
                             std::optional<bool> acPowered);

}  // namespace quillmeter
