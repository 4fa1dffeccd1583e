#include "ui/tray/ContextMenu.h"

#include <QMenu>

#include "ui/theme/QtText.h"
#include "ui/tray/TrayContent.h"

namespace quillmeter {

void showContextMenu(TrayContent& content, const QPoint& position) {
  auto* menu = new QMenu;
  menu->setObjectName("tray.menu");
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const TrayMenuEntry& entry : content.menu()) {
    if (entry.isSeparator()) {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(qtText(entry.text).replace('&', "&&"));
    action->setEnabled(entry.isEnabled());
    QObject::connect(action, &QAction::triggered, menu,
                     [&content, command = entry.command] { content.chosen(command); });
  }
  menu->popup(position);
}

}  // namespace quillmeter
