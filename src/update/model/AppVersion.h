#pragma once

#include <cstdint>
#include <string>

namespace quillmeter {

// Which program runs: "0.1.0" and its build number.
struct AppVersion {
  std::string marketingVersion;
  std::int64_t buildNumber = 0;

  static AppVersion current();
  // "0.1.0 (1)"
  std::string diagnosticDisplay() const { return marketingVersion + " (" + std::to_string(buildNumber) + ")"; }
};

}  // namespace quillmeter
