#include "app/StoredLanguage.h"

#include "base/Clock.h"
#include "platform/linux/JsonPreferenceDomain.h"
#include "platform/linux/XdgPaths.h"
#include "platform/qt/QtCatalogue.h"
#include "preferences/AppLanguage.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {

std::string interfaceLanguage(const PreferenceStore& preferences) {
  const AppLanguage selected = selectedAppLanguage(preferences);
  return std::string(selected == AppLanguage::system ? systemLanguage() : rawValue(selected));
}

std::string storedLanguage() {
  const SystemClock clock;
  const std::string name(SettingsKeys::standardDomainName);
  JsonPreferenceDomain domain(name, XdgPaths::current().standardPreferences(name), clock);
  return interfaceLanguage(PreferenceStore(domain));
}

}  // namespace quillmeter
