#include "ui/settings/PageList.h"

#include <algorithm>
#include <utility>

#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>

#include "menubar/SymbolPainter.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

constexpr int listWidth = 184;
constexpr int itemHeight = 36;
constexpr int inset = 12;
constexpr int symbolEdge = 18;
constexpr int symbolGap = 10;

}  // namespace

PageListItem::PageListItem(std::string id, std::string symbol, QWidget* parent)
    : QAbstractButton(parent), id_(std::move(id)), symbol_(std::move(symbol)) {
  setCheckable(true);
  setAutoExclusive(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize PageListItem::sizeHint() const {
  const int text = QFontMetrics(fontFor(TextRole::strong)).horizontalAdvance(this->text());
  return {inset + symbolEdge + symbolGap + text + inset, lengthForText(itemHeight)};
}

void PageListItem::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const ThemeColors& colors = ThemeColors::of(palette());
  if (isChecked()) {
    Shapes::panel(painter, rect(), Shapes::controlRadius, colors.selection);
  } else if (underMouse()) {
    Shapes::panel(painter, rect(), Shapes::controlRadius, colors.hover);
  }
  const QRectF symbol(inset, (height() - symbolEdge) / 2, symbolEdge, symbolEdge);
  SymbolPainter::paint(painter, symbol_, symbol, isChecked() ? colors.accent : colors.secondaryText);
  const double left = symbol.right() + symbolGap;
  painter.setFont(fontFor(isChecked() ? TextRole::strong : TextRole::body));
  painter.setPen(colors.text);
  painter.drawText(QRectF(left, 0, width() - left - inset / 2, height()), Qt::AlignLeft | Qt::AlignVCenter, text());
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, rect(), Shapes::controlRadius, colors);
}

void PageListItem::enterEvent(QEnterEvent*) {
  update();
}

void PageListItem::leaveEvent(QEvent*) {
  update();
}

PageList::PageList(QWidget* parent) : QWidget(parent) {
  constexpr int margin = 12;
  constexpr int top = 20;
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(margin, top, margin, margin);
  layout->setSpacing(2);
  layout->addStretch();
  setMinimumWidth(listWidth);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

void PageList::addPage(std::string id, std::string symbol, const QString& objectName) {
  auto* item = new PageListItem(std::move(id), std::move(symbol), this);
  item->setObjectName(objectName);
  auto* box = dynamic_cast<QVBoxLayout*>(layout());
  box->insertWidget(box->count() - 1, item);
  connect(item, &QAbstractButton::toggled, this, [this, item](bool on) {
    if (on && handler_) handler_(item->id());
  });
  items_.push_back(item);
}

void PageList::setTitle(std::size_t index, const QString& title) {
  items_[index]->setText(title);
  items_[index]->setAccessibleName(title);
  items_[index]->updateGeometry();
}

void PageList::setChosen(const std::string& id) {
  const auto item = std::ranges::find(items_, id, [](const PageListItem* known) { return known->id(); });
  if (item == items_.end()) return;
  (*item)->setChecked(true);
  // Who goes through the list by key goes on from the page that is shown.
  if (isAncestorOf(window()->focusWidget())) (*item)->setFocus(Qt::OtherFocusReason);
  setFocusProxy(*item);
}

void PageList::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const ThemeColors& colors = ThemeColors::of(palette());
  painter.fillRect(rect(), colors.sidebar);
  const double line = Shapes::hairline(painter);
  painter.fillRect(QRectF(width() - line, 0, line, height()), colors.separator);
}

}  // namespace quillmeter
