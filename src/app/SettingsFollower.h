#pragma once

#include <functional>
#include <memory>

#include "base/Observers.h"
#include "platform/MainExecutor.h"
#include "preferences/PreferenceStore.h"

namespace quillmeter {

// Acts on settings that changed, whoever changed them: this program's own pages or another program. The actions run on
// the next turn of the event loop. Main thread.
class SettingsFollower {
 public:
  struct Actions {
    std::function<void()> languageChanged;
    std::function<void()> periodChanged;
    std::function<void()> quickStatusNeeds;  // style or layout: whether quick status has to run
    std::function<void()> agentsChanged;     // switches and grants
    std::function<void()> dockChanged;
  };

  SettingsFollower(PreferenceStore& preferences, MainExecutor& executor, Actions actions);

 private:
  struct State;
  std::shared_ptr<State> state_;
  Subscription changes_;
};

}  // namespace quillmeter
