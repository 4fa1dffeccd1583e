#pragma once

#include <string>
#include <vector>

#include "base/LocaleConventions.h"

namespace quillmeter {

// What there is to say about the last scan. `names` (display names of providers) belongs to missingAuthorization and
// incompleteLogs only and is empty otherwise.
struct AgentScanStatus {
  enum class Kind { reading, monitoringDisabled, missingAuthorization, incompleteLogs, noLogs };

  Kind kind = Kind::reading;
  std::vector<std::string> names;

  static AgentScanStatus reading() { return {Kind::reading, {}}; }
  static AgentScanStatus monitoringDisabled() { return {Kind::monitoringDisabled, {}}; }
  static AgentScanStatus missingAuthorization(std::vector<std::string> names);
  static AgentScanStatus incompleteLogs(std::vector<std::string> names);
  static AgentScanStatus noLogs() { return {Kind::noLogs, {}}; }

  // The localised sentence for the user, names joined as the locale joins a list.
  std::string message(const LocaleConventions& locale) const;

  friend bool operator==(const AgentScanStatus&, const AgentScanStatus&) = default;
};

}  // namespace quillmeter
