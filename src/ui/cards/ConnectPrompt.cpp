#include "ui/cards/ConnectPrompt.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "ui/widgets/Paragraph.h"

namespace quillmeter {

ConnectPrompt::ConnectPrompt(bool isCompact, const QString& objectName, std::function<void()> act, QWidget* parent)
    : QWidget(parent),
      text_(new Paragraph(isCompact ? TextRole::caption : TextRole::body, TextTone::secondary, this)),
      button_(new QPushButton(this)) {
  text_->setObjectName(objectName + QStringLiteral(".prompt"));
  button_->setObjectName(objectName + QStringLiteral(".act"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(isCompact ? 6 : 12);
  column->addWidget(text_);
  column->addWidget(button_, 0, Qt::AlignLeft);
  column->addStretch();
  connect(button_, &QPushButton::clicked, this, [act = std::move(act)] { act(); });
}

void ConnectPrompt::show(const QString& text, const QString& action) {
  if (text_->text() != text) text_->setText(text);
  if (button_->text() != action) button_->setText(action);
  button_->setVisible(!action.isEmpty());
  setVisible(true);
}

}  // namespace quillmeter
