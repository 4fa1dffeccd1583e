#include "ui/widgets/SymbolButton.h"

#include <algorithm>

#include <QEvent>
#include <QPainter>

#include "menubar/SymbolPainter.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {
namespace {

constexpr int symbolPoints = 16;
constexpr int leastHeight = 32;
constexpr int gap = 7;
constexpr int padding = 12;
constexpr int verticalPadding = 12;

}  // namespace

SymbolButton::SymbolButton(std::string symbol, QWidget* parent) : QPushButton(parent), symbol_(std::move(symbol)) {
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
}

void SymbolButton::setSymbol(std::string symbol) {
  if (symbol == symbol_) return;
  symbol_ = std::move(symbol);
  update();
}

void SymbolButton::setDescription(const QString& description) {
  setToolTip(description);
  setAccessibleName(description);
}

void SymbolButton::setHasGround(bool hasGround) {
  if (hasGround == hasGround_) return;
  hasGround_ = hasGround;
  update();
}

QSize SymbolButton::sizeHint() const {
  const int height = std::max(leastHeight, fontMetrics().height() + verticalPadding);
  if (text().isEmpty()) return {height, height};
  return {2 * padding + symbolPoints + gap + fontMetrics().horizontalAdvance(text()), height};
}

void SymbolButton::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  const bool hovered = isEnabled() && underMouse();
  QColor ground;
  if (isChecked())
    ground = colors.selection;
  else if (hasGround_)
    ground = colors.raised;
  if (isDown())
    ground = mixed(ground.isValid() ? ground : colors.hover, colors.text, 0.1);
  else if (hovered)
    ground = isChecked() ? mixed(ground, colors.text, 0.05) : colors.hover;
  if (ground.isValid())
    Shapes::panel(painter, rect(), Shapes::controlRadius, ground,
                  hasGround_ ? mixed(colors.border, colors.text, 0.12) : QColor());

  QColor color = hovered || !text().isEmpty() ? colors.text : colors.secondaryText;
  if (isChecked()) color = colors.accent;
  if (!isEnabled()) color = colors.tertiaryText;
  QRectF box(0, (height() - symbolPoints) / 2.0, symbolPoints, symbolPoints);
  box.moveLeft(text().isEmpty() ? (width() - symbolPoints) / 2.0 : padding);
  SymbolPainter::paint(painter, symbol_, box, color);
  if (!text().isEmpty()) {
    painter.setPen(isEnabled() ? colors.text : colors.tertiaryText);
    painter.drawText(rect().adjusted(padding + symbolPoints + gap, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
  }
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, rect(), Shapes::controlRadius, colors);
}

bool SymbolButton::event(QEvent* event) {
  // The toolkit repaints its own buttons at these; ours paints itself.
  if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) update();
  return QPushButton::event(event);
}

}  // namespace quillmeter
