#pragma once

#include <string>

#include "platform/ActivationPolicy.h"

namespace quillmeter {

class PreferenceStore;

// Whether the program has an icon among the running ones, by the setting "settings.showInDock". Keeps nothing. Main
// thread.
namespace DockVisibilityManager {

bool isDockIconVisible(const PreferenceStore& preferences);
// Switches the icon and stores the choice; false, and nothing is stored, when the system refuses or the choice cannot
// be stored.
bool setDockIconVisible(bool visible, ActivationPolicy& policy, PreferenceStore& preferences);
// What the user is told when setting it gave false.
std::string failureText();

}  // namespace DockVisibilityManager

}  // namespace quillmeter
