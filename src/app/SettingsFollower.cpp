#include "app/SettingsFollower.h"

#include <array>
#include <bitset>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "preferences/SettingsKeys.h"

namespace quillmeter {
namespace {

enum Subject { language, period, quickStatus, agents, dock, subjectCount };

constexpr std::string_view agentSwitches = "settings.agentTokens.";
constexpr std::string_view agentGrants = "settings.agentLogs.";

Subject subjectOf(std::string_view key) {
  if (key == SettingsKeys::appLanguage.key) return language;
  if (key == SettingsKeys::refreshInterval.key) return period;
  if (key == SettingsKeys::showInDock.key) return dock;
  if (key == SettingsKeys::menuBarStyle.key || key == SettingsKeys::dashboardLayout.key ||
      key == SettingsKeys::menuBarLayout.key) {
    return quickStatus;
  }
  if (key.starts_with(agentSwitches) || key.starts_with(agentGrants)) return agents;
  return subjectCount;
}

}  // namespace

struct SettingsFollower::State {
  std::array<std::function<void()>, subjectCount> actions;
};

SettingsFollower::SettingsFollower(PreferenceStore& preferences, MainExecutor& executor, Actions actions)
    : state_(std::make_shared<State>()) {
  state_->actions = {std::move(actions.languageChanged), std::move(actions.periodChanged),
                     std::move(actions.quickStatusNeeds), std::move(actions.agentsChanged),
                     std::move(actions.dockChanged)};
  // Told from within whoever writes, the store's own timer among them: acted upon when that call is over.
  changes_ = preferences.onChange(
      [state = std::weak_ptr(state_), &executor](const std::vector<std::string>& keys, PreferenceChangeOrigin) {
        std::bitset<subjectCount + 1> subjects;
        for (const std::string& key : keys) subjects.set(subjectOf(key));
        subjects.reset(subjectCount);
        if (subjects.none()) return;
        executor.post([state, subjects] {
          const auto known = state.lock();
          for (std::size_t subject = 0; known && subject < subjectCount; ++subject) {
            if (subjects[subject]) known->actions[subject]();
          }
        });
      });
}

}  // namespace quillmeter
