#include "ui/widgets/SymbolView.h"

#include <algorithm>

#include <QPainter>

#include "menubar/SymbolPainter.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr int groundPadding = 6;
constexpr double groundShare = 0.14;

}  // namespace

SymbolView::SymbolView(std::string symbol, std::string tint, int points, QWidget* parent)
    : QWidget(parent), symbol_(std::move(symbol)), tint_(std::move(tint)), points_(points) {
  WidgetAccessibility::install();
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SymbolView::setSymbol(std::string symbol) {
  if (symbol == symbol_) return;
  symbol_ = std::move(symbol);
  update();
}

void SymbolView::setTint(std::string hex) {
  if (hex == tint_) return;
  tint_ = std::move(hex);
  update();
}

void SymbolView::setHasGround(bool hasGround) {
  if (hasGround == hasGround_) return;
  hasGround_ = hasGround;
  updateGeometry();
  update();
}

QSize SymbolView::sizeHint() const {
  const int edge = points_ + (hasGround_ ? 2 * groundPadding : 0);
  return {edge, edge};
}

void SymbolView::paintEvent(QPaintEvent*) {
  if (symbol_.empty()) return;
  const ThemeColors& colors = ThemeColors::of(palette());
  QColor color = tint_.empty() ? colors.secondaryText : colors.tint(tint_);
  if (!isEnabled()) color = colors.tertiaryText;
  QPainter painter(this);
  const QRectF whole(rect());
  if (hasGround_) {
    const double edge = std::min<double>(points_ + 2 * groundPadding, std::min(whole.width(), whole.height()));
    const QRectF ground(whole.center() - QPointF(edge / 2, edge / 2), QSizeF(edge, edge));
    Shapes::panel(painter, ground, Shapes::controlRadius, mixed(colors.surface, color, groundShare));
  }
  const QPointF half(points_ / 2.0, points_ / 2.0);
  SymbolPainter::paint(painter, symbol_, QRectF(whole.center() - half, whole.center() + half), color);
}

}  // namespace quillmeter
