#include "app/AppSettings.h"

#include <chrono>

#include "platform/qt/QtCatalogue.h"
#include "preferences/AppLanguage.h"
#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

// A setting that another program is just writing comes a moment later.
constexpr std::chrono::milliseconds lockPatience{250};

const std::string standardDomain(SettingsKeys::standardDomainName);

}  // namespace

AppSettings::AppSettings()
    : paths(XdgPaths::current()),
      domain(standardDomain, paths.standardPreferences(standardDomain), clock, {.lockPatience = lockPatience}),
      preferences(domain) {
  domain.setFreshness(PreferenceFreshness::whenRefreshed);
}

std::string AppSettings::language() const {
  const AppLanguage selected = selectedAppLanguage(preferences);
  return std::string(selected == AppLanguage::system ? systemLanguage() : rawValue(selected));
}

}  // namespace quillmeter
