#include "menubar/MenuBarColors.h"

#include <QtGui/QColor>

namespace quillmeter::MenuBarColors {

QColor label(bool dark, bool selected) {
  return dark || selected ? QColor(255, 255, 255) : QColor(28, 28, 30);
}

QColor secondaryLabel(bool dark, bool selected) {
  QColor color = label(dark, selected);
  color.setAlphaF(0.5F);
  return color;
}

QColor track(const QColor& color) {
  QColor faint = color;
  faint.setAlphaF(color.alphaF() * 0.28F);
  return faint;
}

QColor memory(bool dark) {
  return dark ? QColor(0xbf, 0x8f, 0xff) : QColor(0xa5, 0x6b, 0xeb);
}
QColor processor(bool dark) {
  return dark ? QColor(0x6d, 0xa4, 0xff) : QColor(0x4c, 0x8d, 0xff);
}
QColor network(bool dark) {
  return dark ? QColor(0x4f, 0xd0, 0xe0) : QColor(0x1c, 0x8c, 0x9c);
}
QColor volume(bool dark) {
  return memory(dark);
}
QColor trouble(bool dark) {
  return dark ? QColor(0xff, 0x45, 0x3a) : QColor(0xff, 0x3b, 0x30);
}

}  // namespace quillmeter::MenuBarColors
