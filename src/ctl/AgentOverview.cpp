#include "ctl/AgentOverview.h"

#include "access/AgentSwitch.h"

namespace quillmeter::ctl {

std::string_view rawValue(AgentConnection connection) {
  switch (connection) {
    case AgentConnection::connected:
      return "connected";
    case AgentConnection::found:
      return "found";
    case AgentConnection::notFound:
      return "notFound";
    case AgentConnection::unusable:
      return "unusable";
  }
  return "";
}

AgentOverview agentOverview(ToolContext& context, AgentLogProvider provider) {
  AgentOverview overview;
  overview.provider = provider;
  overview.enabled = isSwitchedOn(context.preferences, provider);
  // Asking for the location forgets a grant that cannot be used; what it named is only known before.
  const std::optional<std::string> grant = context.preferences.data(bookmarkKey(provider));
  overview.location = context.access.location(provider);
  overview.detected = overview.location || context.access.looksInstalled(provider);
  if (overview.location) {
    overview.connection = AgentConnection::connected;
  } else if (grant) {
    overview.connection = AgentConnection::unusable;
    overview.unusableFolder = *grant;
  } else {
    overview.connection = overview.detected ? AgentConnection::found : AgentConnection::notFound;
  }
  return overview;
}

std::vector<AgentOverview> agentOverviews(ToolContext& context) {
  std::vector<AgentOverview> overviews;
  for (const AgentLogProvider provider : allAgentLogProviders) overviews.push_back(agentOverview(context, provider));
  return overviews;
}

std::string connectCommand(const ToolContext& context, AgentLogProvider provider) {
  return context.toolCommand + " connect " + std::string(rawValue(provider));
}

}  // namespace quillmeter::ctl
