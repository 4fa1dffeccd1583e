#include "ctl/AgentNote.h"

#include "access/model/AgentLogProvider.h"
#include "base/L10n.h"

namespace quillmeter::ctl {

std::string agentNote(const AgentProviderUsage& usage) {
  const std::int64_t unreadable = usage.unreadableSourceCount.value_or(0);
  if (unreadable > 0) return L10n::format(QM_TR("%d 个来源无法读取"), {std::to_string(unreadable)});
  const bool withoutFigures =
      usage.isDetected && usage.monthMetrics.totalTokens == 0 && usage.weekMetrics.totalTokens == 0;
  if (withoutFigures && usage.id == rawValue(AgentLogProvider::qwenOffice)) {
    return QM_TR("已读取日志 · 千问暂未提供 Token 数字");
  }
  return {};
}

}  // namespace quillmeter::ctl
