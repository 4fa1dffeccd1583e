#include "ui/dashboard/PageHeader.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/ScrollPage.h"

namespace quillmeter {

namespace {

constexpr int top = 24;
constexpr int bottom = 10;
constexpr int aboveColumn = 4;

}  // namespace

PageHeader::PageHeader(QWidget* parent)
    : QWidget(parent),
      title_(new FigureLabel(TextRole::title, TextTone::primary, this)),
      subtitle_(new FigureLabel(TextRole::body, TextTone::secondary, this)),
      controls_(new QHBoxLayout) {
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addWidget(title_);
  texts->addWidget(subtitle_);
  controls_->setSpacing(8);
  auto* column = new QWidget(this);
  column->setMaximumWidth(maximumWidth);
  auto* line = new QHBoxLayout(column);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(12);
  line->addLayout(texts, 1);
  line->addLayout(controls_);
  auto* outer = new QHBoxLayout(this);
  outer->setContentsMargins(ScrollPage::margin, top, ScrollPage::margin, bottom);
  outer->setSpacing(0);
  outer->addStretch(1);
  outer->addWidget(column, 1000);
  outer->addStretch(1);
}

void PageHeader::standAbove(ScrollPage& page) {
  page_ = &page;
  auto* column = new QVBoxLayout(parentWidget());
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(this);
  column->addWidget(&page, 1);
  page.widget()->layout()->setContentsMargins(ScrollPage::margin, aboveColumn, ScrollPage::margin, ScrollPage::margin);
  page.viewport()->installEventFilter(this);
  connect(page.verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { update(); });
}

bool PageHeader::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::Resize) align();
  return false;
}

void PageHeader::align() {
  const int besides = page_->width() - page_->viewport()->width();
  layout()->setContentsMargins(ScrollPage::margin, top, ScrollPage::margin + besides, bottom);
}

void PageHeader::paintEvent(QPaintEvent*) {
  if (page_ == nullptr || page_->verticalScrollBar()->value() == 0) return;
  QPainter painter(this);
  const double line = Shapes::hairline(painter);
  painter.fillRect(QRectF(0, height() - line, width(), line), ThemeColors::of(palette()).separator);
}

void PageHeader::setTitle(const QString& title) {
  title_->setText(title);
}

void PageHeader::setSubtitle(const QString& subtitle) {
  subtitle_->setText(subtitle);
}

void PageHeader::addControl(QWidget* control) {
  controls_->addWidget(control);
}

}  // namespace quillmeter
