#include "ui/dashboard/PageHeader.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/widgets/FigureLabel.h"

namespace quillmeter {

namespace {

constexpr int pageMargin = 24;
constexpr int top = 20;
constexpr int bottom = 0;

}  // namespace

PageHeader::PageHeader(int maximumWidth, QWidget* parent)
    : QWidget(parent),
      title_(new FigureLabel(TextRole::title, TextTone::primary, this)),
      subtitle_(new FigureLabel(TextRole::caption, TextTone::secondary, this)),
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
  outer->setContentsMargins(pageMargin, top, pageMargin, bottom);
  outer->setSpacing(0);
  outer->addStretch(1);
  outer->addWidget(column, 1000);
  outer->addStretch(1);
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
