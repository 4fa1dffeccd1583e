#include "ui/settings/MenuBarStylePictures.h"

#include <utility>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "menubar/CompactStatusRenderer.h"
#include "menubar/MenuBarLabelEntries.h"
#include "quickstatus/QuickStatusMonitor.h"

namespace quillmeter::MenuBarStylePictures {

namespace {

// While nobody samples the connection, a picture of the style shows one rather than a question mark.
QuickStatusSnapshot pictured(const QuickStatusMonitor& monitor) {
  QuickStatusSnapshot quick = monitor.snapshot();
  if (!monitor.isRunning() && quick.connection == QuickConnection::checking) quick.connection = QuickConnection::wifi;
  return quick;
}

}  // namespace

std::string title(MenuBarStyle style) {
  switch (style) {
    case MenuBarStyle::metrics:
      return QM_TR("数值");
    case MenuBarStyle::systemTrio:
      return QM_TR("系统三合一");
    case MenuBarStyle::resourceTrio:
      return QM_TR("资源三环");
    case MenuBarStyle::symbol:
      break;
  }
  return QM_TR("图标");
}

std::string text(MenuBarStyle style) {
  switch (style) {
    case MenuBarStyle::metrics:
      return QM_TR("以文字显示一项数值");
    case MenuBarStyle::systemTrio:
      return QM_TR("外环电量 · 中间网络 · 底部音量");
    case MenuBarStyle::resourceTrio:
      return QM_TR("由外到内：电量、内存、CPU");
    case MenuBarStyle::symbol:
      break;
  }
  return QM_TR("只显示所选的图标");
}

bool hasRings(MenuBarStyle style) {
  return style == MenuBarStyle::systemTrio || style == MenuBarStyle::resourceTrio;
}

MenuBarStylePicture picture(MenuBarStyle style, const UiServices& services, const CompactIconOptions& options,
                            double devicePixelRatio) {
  const SystemSnapshot& system = services.store.system();
  const QuickStatusSnapshot quick = pictured(services.quickStatus);
  if (style != MenuBarStyle::metrics) {
    return {CompactStatusRenderer::drawing(style, system, quick, options, false, false, devicePixelRatio),
            CompactStatusRenderer::drawing(style, system, quick, options, true, false, devicePixelRatio)};
  }
  MenuBarLabel label{
      .entries = menuBarLabelEntries(chosenMenuBarMetric(services.preferences), system, services.store.agents(), quick),
      .layout = MenuBarLabelLayout::square,
      .height = options.size,
      .devicePixelRatio = devicePixelRatio};
  MenuBarLabel dark = label;
  dark.dark = true;
  return {std::move(label), std::move(dark)};
}

}  // namespace quillmeter::MenuBarStylePictures
