#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace quillmeter {

// What one power source says of itself. A key that the system does not know is missing; a value may be of another type
// than expected. The keys:
//   "Name" (text), "Power Source State" (text: "AC Power" or "Battery Power"), "Current Capacity" and "Max Capacity"
//   (integers on one scale), "Is Charging", "Is Charged" (Booleans), "Time to Empty", "Time to Full Charge" (integers,
//   minutes).
using PowerSourceValue = std::variant<std::string, std::int64_t, bool>;
using PowerSourceDescription = std::map<std::string, PowerSourceValue, std::less<>>;

// The batteries that power this machine. Those of mice, keyboards and phones are none of them. Main thread; never
// blocks: the answer is what the system last told.
class PowerSources {
 public:
  virtual ~PowerSources() = default;
  // In the system's order; empty on a machine without a battery. Absent when the system has no answer at all. Valid
  // until the next call or the next turn of the event loop.
  virtual std::optional<std::span<const PowerSourceDescription>> list() = 0;
};

}  // namespace quillmeter
