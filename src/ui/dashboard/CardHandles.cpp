#include "ui/dashboard/CardHandles.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include "base/L10n.h"
#include "menubar/SymbolPainter.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

namespace {

constexpr int edge = 8;  // of the toolbar from the card's corner
constexpr int gripWidth = 22;
constexpr double gripSize = 14;
constexpr double veilOpacity = 0.12;
constexpr int coveredWidth = 170;  // of what the card's header shows beside the toolbar
constexpr int coveredHeight = 52;
constexpr int fadeWidth = 40;

}  // namespace

CardHandles::CardHandles(MonitorComponentKind kind, Handlers handlers, QWidget* parent)
    : QWidget(parent), kind_(kind), handlers_(std::move(handlers)) {
  const QString name = qtText("dashboard.edit." + std::string(rawValue(kind)));
  setObjectName(name);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setCursor(Qt::OpenHandCursor);
  resize_ = new SymbolButton("arrow.left.and.right", this);
  resize_->setObjectName(name + ".size");
  hide_ = new SymbolButton("eye.slash", this);
  hide_->setObjectName(name + ".hide");
  for (SymbolButton* button : {resize_, hide_}) button->setCursor(Qt::ArrowCursor);
  connect(resize_, &QAbstractButton::clicked, this, [this] {
    handlers_.resized(size_ == DashboardCardSize::small ? DashboardCardSize::large : DashboardCardSize::small);
  });
  connect(hide_, &QAbstractButton::clicked, this, [this] { handlers_.hidden(); });
  retranslate();
}

void CardHandles::setState(DashboardCardSize size, int place, int count) {
  if (size == size_ && place == place_ && count == count_) return;
  size_ = size;
  place_ = place;
  count_ = count;
  retranslate();
}

void CardHandles::retranslate() {
  const bool isSmall = size_ == DashboardCardSize::small;
  resize_->setSymbol(isSmall ? "arrow.left.and.right" : "arrow.right.and.line.vertical.and.arrow.left");
  resize_->setDescription(qtText(isSmall ? QM_TR("改为大卡片") : QM_TR("改为小卡片")));
  hide_->setDescription(qtText(QM_TR("隐藏卡片")));
  setAccessibleName(
      qtText(L10n::format(QM_TR("%@，%@，第 %d 张，共 %d 张"), {title(kind_), isSmall ? QM_TR("小") : QM_TR("大"),
                                                                std::to_string(place_), std::to_string(count_)})));
  setAccessibleDescription(qtText(QM_TR("Ctrl 加方向键移动，回车改变大小，Delete 隐藏")));
}

void CardHandles::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) {
    retranslate();
    placeButtons();
  }
  QWidget::changeEvent(event);
}

QRect CardHandles::toolbar() const {
  const QSize button = resize_->sizeHint();
  const int width = gripWidth + 2 * button.width() + 4;
  return {this->width() - edge - width, edge, width, button.height()};
}

void CardHandles::placeButtons() {
  const QRect bar = toolbar();
  const QSize button = resize_->sizeHint();
  hide_->setGeometry(QRect(QPoint(bar.right() + 1 - 2 - button.width(), bar.top()), button));
  resize_->setGeometry(QRect(QPoint(hide_->x() - button.width(), bar.top()), button));
}

void CardHandles::resizeEvent(QResizeEvent*) {
  placeButtons();
}

bool CardHandles::event(QEvent* event) {
  if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave || event->type() == QEvent::FocusIn ||
      event->type() == QEvent::FocusOut) {
    update();
  }
  // Escape ends the drag, not the editing.
  if (event->type() == QEvent::ShortcutOverride && isDragging_) event->accept();
  return QWidget::event(event);
}

// A control or a note at the end of the card's header would look out from behind the toolbar.
void CardHandles::coverHeader(QPainter& painter, const ThemeColors& colors) const {
  const int left = std::max(toolbar().left() - coveredWidth, width() * 2 / 5);
  QColor clear = colors.surface;
  clear.setAlpha(0);
  QLinearGradient fade(left - fadeWidth, 0, left, 0);
  fade.setColorAt(0, clear);
  fade.setColorAt(1, colors.surface);
  QPainterPath inside;
  inside.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Shapes::cardRadius - 1, Shapes::cardRadius - 1);
  painter.save();
  painter.setClipPath(inside);
  painter.fillRect(QRect(left - fadeWidth, 0, width() - left + fadeWidth, coveredHeight), fade);
  painter.restore();
}

void CardHandles::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF area = Shapes::onPixels(painter, QRectF(rect()));
  QColor veil = colors.window;
  veil.setAlphaF(isDragging_ ? 0 : static_cast<float>(underMouse() ? veilOpacity / 2 : veilOpacity));
  const bool isMarked = isDragging_ || underMouse();
  coverHeader(painter, colors);
  Shapes::panel(painter, area, Shapes::cardRadius, veil, isMarked ? colors.accent : colors.border);
  Shapes::panel(painter, QRectF(toolbar()), Shapes::controlRadius, colors.raised, colors.border);
  const QRectF grip(toolbar().left() + (gripWidth - gripSize) / 2.0 + 2, toolbar().center().y() + 0.5 - gripSize / 2,
                    gripSize, gripSize);
  SymbolPainter::paint(painter, "circle.grid.2x3", grip, colors.secondaryText);
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, area, Shapes::cardRadius, colors);
}

void CardHandles::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressedAt_ = event->globalPosition().toPoint();
}

void CardHandles::mouseMoveEvent(QMouseEvent* event) {
  if (!pressedAt_) return;
  const QPoint position = event->globalPosition().toPoint();
  if (!isDragging_) {
    if ((position - *pressedAt_).manhattanLength() < QApplication::startDragDistance()) return;
    isDragging_ = true;
    setCursor(Qt::ClosedHandCursor);
    handlers_.grabbed(*pressedAt_);
  }
  handlers_.dragged(position);
}

void CardHandles::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) endDrag(true);
}

void CardHandles::release() {
  endDrag(false);
}

void CardHandles::endDrag(bool isDropped) {
  pressedAt_.reset();
  if (!std::exchange(isDragging_, false)) return;
  setCursor(Qt::OpenHandCursor);
  update();
  handlers_.released(isDropped);
}

bool CardHandles::moveByKey(const QKeyEvent& event) {
  const bool moves = event.modifiers() & Qt::ControlModifier;
  const auto& step = moves ? handlers_.moved : handlers_.focusMoved;
  switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
      step(-1);
      return true;
    case Qt::Key_Right:
    case Qt::Key_Down:
      step(1);
      return true;
    case Qt::Key_Home:
      step(-count_);
      return true;
    case Qt::Key_End:
      step(count_);
      return true;
    default:
      return false;
  }
}

void CardHandles::keyPressEvent(QKeyEvent* event) {
  if (isDragging_) {
    if (event->key() == Qt::Key_Escape) endDrag(false);
    return;
  }
  if (moveByKey(*event)) return;
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      resize_->click();
      return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      handlers_.hidden();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace quillmeter
