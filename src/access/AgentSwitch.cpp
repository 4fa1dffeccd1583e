#include "access/AgentSwitch.h"

#include "preferences/PreferenceStore.h"

namespace quillmeter {

bool isSwitchedOn(const PreferenceStore& preferences, AgentLogProvider provider) {
  return preferences.boolean(monitoringSettingsKey(provider)).value_or(false);
}

bool wasSwitchedOff(const PreferenceStore& preferences, AgentLogProvider provider) {
  return !isSwitchedOn(preferences, provider) && preferences.domain().contains(monitoringSettingsKey(provider));
}

}  // namespace quillmeter
