#include "ui/popover/PopoverWindow.h"

#include <algorithm>

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "ui/popover/PopoverCards.h"
#include "ui/popover/PopoverFooter.h"
#include "ui/popover/PopoverPosition.h"
#include "ui/popover/WindowSystem.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

constexpr int margin = 12;
constexpr double greatestShareOfScreen = 0.8;

QScrollArea* scrollAreaOf(QWidget* content, QWidget* parent) {
  auto* area = new QScrollArea(parent);
  area->setObjectName("popover.scroll");
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->viewport()->setAutoFillBackground(false);
  area->setWidget(content);
  content->setAutoFillBackground(false);
  return area;
}

// What the widget's content needs at the popover's width.
int heightOf(const QWidget& widget, int width) {
  QLayout* layout = widget.layout();
  layout->activate();
  return layout->hasHeightForWidth() ? layout->totalHeightForWidth(width) : layout->totalSizeHint().height();
}

}  // namespace

struct PopoverWindow::Parts {
  const UiServices& services;
  PopoverCards* cards = nullptr;
  PopoverFooter* footer = nullptr;
  QScrollArea* scroll = nullptr;
  bool composes = false;
  std::function<void()> left{};
  bool wasActive = false;
  QRect anchor;  // what it was opened at
  QRect available;
  QSize fitted;
  QTimer fitSoon{};
};

PopoverWindow::PopoverWindow(const UiServices& services)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      parts_(new Parts{.services = services}) {
  setObjectName("popover");
  setWindowTitle("Quillmeter");
  parts_->composes = WindowSystem::composes();
  if (parts_->composes) setAttribute(Qt::WA_TranslucentBackground);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  parts_->cards = new PopoverCards(services);
  parts_->cards->layout()->setContentsMargins(margin, margin, margin, margin);
  parts_->scroll = scrollAreaOf(parts_->cards, this);
  column->addWidget(parts_->scroll);
  parts_->footer = new PopoverFooter(services, this);
  column->addWidget(parts_->footer);
  parts_->fitSoon.setSingleShot(true);
  connect(&parts_->fitSoon, &QTimer::timeout, this, [this] { fit(); });
  parts_->cards->installEventFilter(this);
  parts_->footer->installEventFilter(this);
}

PopoverWindow::~PopoverWindow() = default;

void PopoverWindow::showAt(const QRect& icon) {
  parts_->anchor = icon.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : icon;
  const QScreen* screen = QGuiApplication::screenAt(parts_->anchor.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  parts_->available = screen->availableGeometry();
  show();
  raise();
  WindowSystem::takeFocus(*this);
}

void PopoverWindow::setLeft(std::function<void()> left) {
  parts_->left = std::move(left);
}

// Shown by show() alone it is as good as opened at the pointer. The cards have their values by now.
void PopoverWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (parts_->available.isEmpty()) parts_->available = screen()->availableGeometry();
  fit();
}

// As high as the content, and where it belongs with that height. A scroll bar stands in the margin, so that the cards
// keep their width.
void PopoverWindow::fit() {
  parts_->fitSoon.stop();
  const int most = static_cast<int>(parts_->available.height() * greatestShareOfScreen);
  const int breadth = std::min(lengthForText(popoverWidth), parts_->available.width());
  const int below = heightOf(*parts_->footer, breadth);
  const int content = heightOf(*parts_->cards, breadth);
  const bool scrolls = content + below > most;
  // Told, not left to the area: that would keep its bar for a text that wraps only beside the bar.
  parts_->scroll->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  const int bar = scrolls ? parts_->scroll->verticalScrollBar()->sizeHint().width() : 0;
  parts_->cards->layout()->setContentsMargins(margin, margin, std::max(0, margin - bar), margin);
  const QSize wanted(breadth, std::min(content + below, most));
  if (wanted == parts_->fitted) return;
  parts_->fitted = wanted;
  setFixedSize(wanted);
  if (WindowSystem::placesWindows() && !parts_->anchor.isNull()) {
    move(popoverPosition(parts_->anchor, {}, parts_->available, wanted));
  }
}

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::LayoutRequest && isVisible()) parts_->fitSoon.start();
  return QWidget::eventFilter(watched, event);
}

void PopoverWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::ActivationChange) return;
  if (isActiveWindow()) {
    parts_->wasActive = true;
  } else if (parts_->wasActive) {
    // A window of ours that opens from here takes the focus a moment later.
    QTimer::singleShot(0, this, [this] { closeIfLeft(); });
  }
}

void PopoverWindow::closeIfLeft() {
  if (!isVisible() || isActiveWindow() || QApplication::activePopupWidget() || QApplication::activeModalWidget())
    return;
  if (parts_->left) parts_->left();
  close();
}

void PopoverWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else if (event->matches(QKeySequence::Refresh)) {
    parts_->services.store.refreshAll();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PopoverWindow::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  const double radius = parts_->composes ? Shapes::cardRadius : 0;
  Shapes::panel(painter, rect(), radius, colors.window, colors.border);
  const int line = parts_->footer->y();
  painter.setPen(QPen(colors.separator, Shapes::hairline(painter)));
  painter.drawLine(1, line, width() - 2, line);
}

}  // namespace quillmeter
