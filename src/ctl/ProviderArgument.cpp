#include "ctl/ProviderArgument.h"

#include "base/L10n.h"

namespace quillmeter::ctl {

tl::expected<AgentLogProvider, std::string> providerArgument(std::string_view text) {
  if (const auto provider = agentLogProviderFromRawValue(text)) return *provider;
  std::string known;
  for (const AgentLogProvider provider : allAgentLogProviders) {
    if (!known.empty()) known += ", ";
    known += rawValue(provider);
  }
  return tl::unexpected(L10n::format(QM_TR("没有“%@”这个 Agent，可选：%@。"), {text, known}));
}

}  // namespace quillmeter::ctl
