#include "ui/system/AgentConnecting.h"

#include "access/AgentAuthorizationCoordinator.h"
#include "access/AgentLogAccessManager.h"
#include "access/AgentSwitch.h"
#include "preferences/PreferenceStore.h"
#include "ui/AppActions.h"

namespace quillmeter {
namespace {

void switchOn(const UiServices& services, AgentLogProvider provider, HandMadeOff handMadeOff) {
  if (!services.access.grantedFolder(provider) || isSwitchedOn(services.preferences, provider)) return;
  if (handMadeOff == HandMadeOff::stays && wasSwitchedOff(services.preferences, provider)) return;
  const auto stored = services.preferences.set(monitoringSettingsKey(provider), true);
  if (!stored) services.actions.preferenceFailed(stored.error());
}

}  // namespace

void connectAgents(const UiServices& services, const std::vector<AgentLogProvider>& providers,
                   HandMadeOff handMadeOff) {
  if (providers.empty() || services.authorization.isConnecting()) return;
  // With the services themselves: the view whose record this is may be closed before the picker is.
  auto finish = [services, providers, handMadeOff](bool) {
    for (const AgentLogProvider provider : providers) switchOn(services, provider, handMadeOff);
  };
  if (providers.size() == 1) return services.authorization.connect(providers.front(), std::move(finish));
  services.authorization.connectInSequence(providers, std::move(finish));
}

Notice::Kind noticeKind(AgentAuthorizationFeedback::Kind kind) {
  switch (kind) {
    case AgentAuthorizationFeedback::Kind::success:
      return Notice::Kind::success;
    case AgentAuthorizationFeedback::Kind::notice:
      return Notice::Kind::information;
    case AgentAuthorizationFeedback::Kind::error:
      break;
  }
  return Notice::Kind::error;
}

}  // namespace quillmeter
