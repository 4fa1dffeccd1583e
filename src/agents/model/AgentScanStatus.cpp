#include "agents/model/AgentScanStatus.h"

#include <utility>

#include "base/L10n.h"

namespace quillmeter {

AgentScanStatus AgentScanStatus::missingAuthorization(std::vector<std::string> names) {
  return {Kind::missingAuthorization, std::move(names)};
}

AgentScanStatus AgentScanStatus::incompleteLogs(std::vector<std::string> names) {
  return {Kind::incompleteLogs, std::move(names)};
}

std::string AgentScanStatus::message(const LocaleConventions& locale) const {
  switch (kind) {
    case Kind::reading:
      return QM_TR("正在读取本地 Agent 日志");
    case Kind::monitoringDisabled:
      return QM_TR("Agent Token 监控已关闭");
    case Kind::missingAuthorization:
      return L10n::format(QM_TR("尚未选择 %@ 日志文件夹"), {joinList(names, locale)});
    case Kind::incompleteLogs:
      return L10n::format(QM_TR("%@ 的部分日志读取失败，统计可能不完整。"), {joinList(names, locale)});
    case Kind::noLogs:
      break;
  }
  return QM_TR("所选文件夹中暂无可统计的 Agent 日志");
}

}  // namespace quillmeter
