#include "preferences/LaunchAtLoginManager.h"

#include "base/L10n.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::LaunchAtLoginManager {

std::string ManagerError::errorDescription() const {
  return kind == Kind::unsupported ? QM_TR("当前系统版本暂不支持开机自启。") : platformText;
}

LaunchAtLoginState state(LoginItems& items) {
  switch (items.status()) {
    case LoginItemStatus::registered:
      return LaunchAtLoginState::enabled;
    case LoginItemStatus::awaitingApproval:
      return LaunchAtLoginState::requiresApproval;
    case LoginItemStatus::unavailable:
      return LaunchAtLoginState::unsupported;
    case LoginItemStatus::notRegistered:
      break;
  }
  return LaunchAtLoginState::disabled;
}

tl::expected<LaunchAtLoginState, ManagerError> setEnabled(bool enabled, LoginItems& items,
                                                          PreferenceStore& preferences) {
  if (state(items) == LaunchAtLoginState::unsupported) {
    return tl::unexpected(ManagerError{ManagerError::Kind::unsupported, {}});
  }
  const auto done = enabled ? items.registerProgram() : items.unregisterProgram();
  if (!done) return tl::unexpected(ManagerError{ManagerError::Kind::platformCallFailed, done.error()});
  // Only a mirror: what counts has happened, whether this can be written or not.
  static_cast<void>(preferences.set(SettingsKeys::launchAtLogin.key, enabled));
  return state(items);
}

bool isChosen(LaunchAtLoginState state) {
  return state == LaunchAtLoginState::enabled || state == LaunchAtLoginState::requiresApproval;
}

std::optional<std::string> hint(LaunchAtLoginState state) {
  if (state == LaunchAtLoginState::requiresApproval) return QM_TR("请到系统设置的“登录项”中批准");
  if (state == LaunchAtLoginState::unsupported)
    return ManagerError{ManagerError::Kind::unsupported, {}}.errorDescription();
  return std::nullopt;
}

}  // namespace quillmeter::LaunchAtLoginManager
