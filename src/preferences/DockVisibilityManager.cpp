#include "preferences/DockVisibilityManager.h"

#include "base/L10n.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter::DockVisibilityManager {

bool isDockIconVisible(const PreferenceStore& preferences) {
  return preferences.value(SettingsKeys::showInDock);
}

bool setDockIconVisible(bool visible, ActivationPolicy& policy, PreferenceStore& preferences) {
  const bool before = isDockIconVisible(preferences);
  if (!policy.setListed(visible)) return false;
  if (!preferences.set(SettingsKeys::showInDock.key, visible)) {
    // Else the next start would show something else than this one.
    policy.setListed(before);
    return false;
  }
  if (visible) policy.activate();
  return true;
}

std::string failureText() {
  return QM_TR("无法更新 Dock 显示状态，请重新打开应用后再试");
}

}  // namespace quillmeter::DockVisibilityManager
