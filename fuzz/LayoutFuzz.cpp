// A stored layout of any origin: what is loaded holds every component once, and storing it changes nothing.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/fake/InMemoryPreferenceDomain.h"
#include "preferences/DashboardLayoutStorage.h"
#include "preferences/PreferenceStore.h"

namespace {

using namespace quillmeter;

void checkPlacement(const std::string& text, ComponentPlacement placement) {
  const auto cards = DashboardLayoutStorage::load(text, placement);
  if (cards.size() != allMonitorComponentKinds.size()) std::abort();
  for (const MonitorComponentKind kind : allMonitorComponentKinds) {
    if (std::ranges::count(cards, kind, &DashboardCardConfig::kind) != 1) std::abort();
  }
  const auto encoded = DashboardLayoutStorage::encode(cards);
  if (!encoded || DashboardLayoutStorage::load(encoded, placement) != cards) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  checkPlacement(text, ComponentPlacement::dashboard);
  checkPlacement(text, ComponentPlacement::menuBar);
  InMemoryPreferenceDomain domain;
  PreferenceStore store(domain);
  const auto key = std::string(DashboardLayoutStorage::preferenceKey(ComponentPlacement::menuBar));
  domain.changeByAnotherProgram(key, PreferenceData{text});
  DashboardLayoutStorage::migrateLegacyQuickStatus(store);
  const std::size_t writes = domain.writes().size();
  DashboardLayoutStorage::migrateLegacyQuickStatus(store);
  if (domain.writes().size() != writes) std::abort();  // nothing is left to replace
  return 0;
}
