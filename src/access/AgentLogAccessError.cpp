#include "access/AgentLogAccessError.h"

#include "base/L10n.h"

namespace quillmeter {

std::optional<std::string> AgentLogAccessError::errorDescription() const {
  switch (kind) {
    case Kind::unexpectedFolder:
      return L10n::format(QM_TR("请选择 %@。"), {expectedFolder(provider.value_or(AgentLogProvider::codex))});
    case Kind::missingLogFolder:
      return L10n::format(QM_TR("所选目录中没有 %@ 日志文件夹。"), {title(provider.value_or(AgentLogProvider::codex))});
    case Kind::selectionCancelled:
      return std::nullopt;
    case Kind::bookmarkCreationFailed:
      return QM_TR("无法保存文件夹访问权限，请重新选择。");
  }
  return std::nullopt;
}

}  // namespace quillmeter
