#pragma once

#include <string>

#include "base/Clock.h"
#include "platform/linux/JsonPreferenceDomain.h"
#include "platform/linux/XdgPaths.h"
#include "preferences/PreferenceStore.h"

namespace quillmeter {

// The user's settings, read before anything else is there: even what the command line is answered with depends on the
// chosen language. Made by main(), outlives the application.
struct AppSettings {
  AppSettings();
  // The chosen interface language ("zh-Hans", "en"); the system's, where the user chose that.
  std::string language() const;

  SystemClock clock;
  XdgPaths paths;
  JsonPreferenceDomain domain;
  PreferenceStore preferences;
};

}  // namespace quillmeter
