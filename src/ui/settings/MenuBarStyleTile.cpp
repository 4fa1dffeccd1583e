#include "ui/settings/MenuBarStyleTile.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include "menubar/CompactStatusRenderer.h"
#include "menubar/SymbolPainter.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

constexpr int inset = 8;
constexpr int panelHeight = 80;
constexpr int nameHeight = 34;
constexpr double panelRadius = 8;

QImage imageOf(const MenuBarStylePicture::Drawing& drawing) {
  if (const auto* icon = std::get_if<CompactIconDrawing>(&drawing)) return CompactStatusRenderer::image(*icon);
  return MenuBarLabelRenderer::image(std::get<MenuBarLabel>(drawing)).value_or(QImage());
}

void drawCentred(QPainter& painter, const QImage& image, const QRectF& area) {
  if (image.isNull()) return;
  const QSizeF size = image.deviceIndependentSize();
  const QPointF corner(area.center().x() - size.width() / 2, area.center().y() - size.height() / 2);
  painter.drawImage(QPointF(qRound(corner.x()), qRound(corner.y())), image);
}

}  // namespace

MenuBarStyleTile::MenuBarStyleTile(MenuBarStyle style, QWidget* parent) : QAbstractButton(parent), style_(style) {
  setCheckable(true);
  setAutoExclusive(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void MenuBarStyleTile::show(const MenuBarStylePicture& picture) {
  if (picture == picture_ && !light_.isNull()) return;
  const bool lightChanged = picture.light != picture_.light || light_.isNull();
  const bool darkChanged = picture.dark != picture_.dark || dark_.isNull();
  picture_ = picture;
  if (lightChanged) light_ = imageOf(picture_.light);
  if (darkChanged) dark_ = imageOf(picture_.dark);
  update();
}

QSize MenuBarStyleTile::sizeHint() const {
  const int name = QFontMetrics(fontFor(TextRole::strong)).horizontalAdvance(text());
  return {std::max(200, name + 4 * inset), inset + panelHeight + lengthForText(nameHeight)};
}

QSize MenuBarStyleTile::minimumSizeHint() const {
  return {160, sizeHint().height()};
}

void MenuBarStyleTile::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const ThemeColors& colors = ThemeColors::of(palette());
  const QColor ground = underMouse() && !isChecked() ? colors.hover : colors.surface;
  Shapes::panel(painter, rect(), Shapes::cardRadius, ground, colors.border);
  if (isChecked()) {
    constexpr double frame = 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.accent, frame));
    const QRectF edge = QRectF(rect()).adjusted(frame / 2, frame / 2, -frame / 2, -frame / 2);
    painter.drawRoundedRect(edge, Shapes::cardRadius - frame / 2, Shapes::cardRadius - frame / 2);
  }
  paintPanels(painter, QRectF(inset, inset, width() - 2 * inset, panelHeight));
  painter.setFont(fontFor(isChecked() ? TextRole::strong : TextRole::body));
  painter.setPen(isChecked() ? colors.accent : colors.text);
  painter.drawText(QRectF(inset, inset + panelHeight, width() - 2 * inset, lengthForText(nameHeight)), Qt::AlignCenter,
                   text());
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, rect(), Shapes::cardRadius, colors);
}

// A light panel beside a dark one: the user may have either, whatever the theme of the windows is.
void MenuBarStyleTile::paintPanels(QPainter& painter, const QRectF& area) const {
  const QColor lightPanel(0xEC, 0xEE, 0xF2);
  const QColor darkPanel(0x26, 0x29, 0x30);
  const QRectF left(area.left(), area.top(), area.width() / 2, area.height());
  const QRectF right(left.right(), area.top(), area.width() / 2, area.height());
  QPainterPath shape;
  shape.addRoundedRect(area, panelRadius, panelRadius);
  painter.save();
  painter.setClipPath(shape);
  painter.fillRect(left, lightPanel);
  painter.fillRect(right, darkPanel);
  painter.restore();
  Shapes::panel(painter, area, panelRadius, {}, ThemeColors::of(palette()).border);
  drawCentred(painter, light_, left);
  drawCentred(painter, dark_, right);
}

void MenuBarStyleTile::enterEvent(QEnterEvent*) {
  update();
}

void MenuBarStyleTile::leaveEvent(QEvent*) {
  update();
}

}  // namespace quillmeter
