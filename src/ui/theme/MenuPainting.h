#pragma once

#include <QSize>

class QPainter;
class QStyleOption;
class QStyleOptionMenuItem;

namespace quillmeter {

// Menus, the lists of combo boxes, and tool tips.
namespace MenuPainting {

constexpr int panelMargin = 5;
constexpr int textInset = 30;  // from the edge of an item to its text
constexpr double panelRadius = 10;

// The ground of a menu, of a combo box's list or of a tool tip.
void panel(const QStyleOption& option, QPainter& painter, double radius = panelRadius);
void item(const QStyleOptionMenuItem& option, QPainter& painter);
// Of a menu, whose contents are the text; of a combo box's list they are nothing that counts.
QSize itemSize(const QStyleOptionMenuItem& option, const QSize& contents, bool isInComboBox);

}  // namespace MenuPainting

}  // namespace quillmeter
