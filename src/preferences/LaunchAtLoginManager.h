#pragma once

#include <optional>
#include <string>

#include <tl/expected.hpp>

#include "platform/LoginItems.h"

namespace quillmeter {

class PreferenceStore;

enum class LaunchAtLoginState { enabled, disabled, requiresApproval, unsupported };

// Whether the program starts at login. Keeps nothing: the system's list is asked each time and decides; the setting
// "settings.launchAtLogin" only mirrors what the user chose last. Main thread.
namespace LaunchAtLoginManager {

struct ManagerError {
  enum class Kind { platformCallFailed, unsupported };

  Kind kind = Kind::platformCallFailed;
  std::string platformText;  // the system's description of its failure

  std::string errorDescription() const;
  friend bool operator==(const ManagerError&, const ManagerError&) = default;
};

LaunchAtLoginState state(LoginItems& items);
// Gives the state afterwards, and mirrors the choice.
tl::expected<LaunchAtLoginState, ManagerError> setEnabled(bool enabled, LoginItems& items,
                                                          PreferenceStore& preferences);
// Whether the switch is shown on: also while the system waits for the user's approval.
bool isChosen(LaunchAtLoginState state);
// What stands in the way of the state that the user chose or could choose.
std::optional<std::string> hint(LaunchAtLoginState state);

}  // namespace LaunchAtLoginManager

}  // namespace quillmeter
