#include "access/AgentAuthorizationFeedback.h"

#include "base/L10n.h"

namespace quillmeter {

std::string AuthorizationMessage::localized() const {
  if (accessError) return accessError->errorDescription().value_or(QM_TR("无法保存文件夹访问权限，请重新选择。"));
  const std::string text = L10n::string(format);
  if (provider) return L10n::format(text, {title(*provider)});
  if (count) return L10n::format(text, {std::to_string(*count)});
  return text;
}

}  // namespace quillmeter
