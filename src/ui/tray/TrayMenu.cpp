#include "ui/tray/TrayMenu.h"

#include "base/L10n.h"
#include "ui/tray/TrayTooltip.h"

namespace quillmeter {

std::vector<TrayMenuEntry> trayMenu(const AgentUsageSnapshot& agents) {
  return {{1, todayTokensText(agents)},
          {2, {}},
          {3, QM_TR("打开仪表盘"), TrayCommand::dashboard},
          {4, QM_TR("设置…"), TrayCommand::settings},
          {5, QM_TR("立即刷新"), TrayCommand::refresh},
          {6, {}},
          {7, QM_TR("退出 Quillmeter"), TrayCommand::quit}};
}

}  // namespace quillmeter
