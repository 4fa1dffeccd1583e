#pragma once

class QPoint;

namespace quillmeter {

class TrayContent;

// Shows the item's menu in a window of our own, for trays that draw none; gone when it is closed. `position` in global
// coordinates.
void showContextMenu(TrayContent& content, const QPoint& position);

}  // namespace quillmeter
