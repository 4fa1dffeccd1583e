#include "ui/cards/UsageRange.h"

#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

AgentUsageRange chosenUsageRange(const UiServices& services) {
  return agentUsageRangeFromRawValue(services.preferences.value(SettingsKeys::agentUsageRange))
      .value_or(AgentUsageRange::today);
}

void chooseUsageRange(const UiServices& services, const std::string& range) {
  const auto stored = services.preferences.set(SettingsKeys::agentUsageRange.key, range);
  if (!stored) services.actions.preferenceFailed(stored.error());
}

std::vector<SegmentedControl::Segment> usageRangeSegments() {
  std::vector<SegmentedControl::Segment> segments;
  for (const AgentUsageRange range : allAgentUsageRanges) {
    segments.push_back({std::string(rawValue(range)), qtText(title(range))});
  }
  return segments;
}

}  // namespace quillmeter
