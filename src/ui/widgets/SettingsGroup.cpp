#include "ui/widgets/SettingsGroup.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/Card.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr int rowHeight = 48;
constexpr int sidePadding = 16;
constexpr int verticalPadding = 9;

// The lines between whichever rows are visible.
class Rows final : public QWidget {
 public:
  explicit Rows(QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
  }
  QVBoxLayout* column() const { return column_; }

 protected:
  void paintEvent(QPaintEvent*) override {
    const ThemeColors& colors = ThemeColors::of(palette());
    QPainter painter(this);
    const double line = Shapes::hairline(painter);
    bool isFirst = true;
    for (int index = 0; index < column_->count(); ++index) {
      const QWidget* row = column_->itemAt(index)->widget();
      if (row == nullptr || row->isHidden()) continue;
      const QRectF edge(sidePadding, row->y() - line, width() - 2 * sidePadding, line);
      if (!isFirst) painter.fillRect(Shapes::onPixels(painter, edge), colors.separator);
      isFirst = false;
    }
  }

 private:
  QVBoxLayout* column_;
};

}  // namespace

SettingRow::SettingRow(QWidget* control, QWidget* parent) : QWidget(parent), control_(control) {
  WidgetAccessibility::install();
  title_ = new Paragraph(TextRole::body, TextTone::primary, this);
  subtitle_ = new Paragraph(TextRole::caption, TextTone::secondary, this);
  subtitle_->hide();
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addStretch();
  texts->addWidget(title_);
  texts->addWidget(subtitle_);
  texts->addStretch();
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(sidePadding, verticalPadding, sidePadding, verticalPadding);
  line->setSpacing(sidePadding);
  line->addLayout(texts, 1);
  if (control_ != nullptr) line->addWidget(control_, 0, Qt::AlignVCenter);
  setMinimumHeight(rowHeight);
}

void SettingRow::setTitle(const QString& title) {
  title_->setText(title);
  setAccessibleName(title);
  if (control_ != nullptr) control_->setAccessibleName(title);
}

void SettingRow::setSubtitle(const QString& subtitle) {
  subtitle_->setText(subtitle);
  subtitle_->setVisible(!subtitle.isEmpty());
  if (control_ != nullptr) control_->setAccessibleDescription(subtitle);
}

SettingsGroup::SettingsGroup(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  title_ = new Paragraph(TextRole::strong, TextTone::secondary, this);
  footnote_ = new Paragraph(TextRole::caption, TextTone::secondary, this);
  for (Paragraph* text : {title_, footnote_}) {
    text->setContentsMargins(sidePadding / 4, 0, sidePadding / 4, 0);
    text->hide();
  }
  card_ = new Card(this);
  card_->setPadding(0);
  auto* rows = new Rows(card_);
  card_->content()->addWidget(rows);
  rows_ = rows->column();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  column->addWidget(title_);
  column->addWidget(card_);
  column->addWidget(footnote_);
}

void SettingsGroup::setTitle(const QString& title) {
  title_->setText(title);
  title_->setVisible(!title.isEmpty());
  setAccessibleName(title);
}

void SettingsGroup::setFootnote(const QString& text) {
  footnote_->setText(text);
  footnote_->setVisible(!text.isEmpty());
}

SettingRow* SettingsGroup::addRow(QWidget* control) {
  auto* row = new SettingRow(control);
  rows_->addWidget(row);
  return row;
}

void SettingsGroup::addWidget(QWidget* widget) {
  rows_->addWidget(widget);
}

}  // namespace quillmeter
