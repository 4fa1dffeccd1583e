#include "ui/onboarding/OnboardingStep.h"

#include <QEvent>
#include <QVBoxLayout>

#include "ui/widgets/Paragraph.h"

namespace quillmeter {

OnboardingStep::OnboardingStep(QWidget* parent) : QWidget(parent) {
  title_ = new Paragraph(TextRole::title, TextTone::primary, this);
  text_ = new Paragraph(TextRole::body, TextTone::secondary, this);
  content_ = new QVBoxLayout;
  content_->setSpacing(12);
  for (Paragraph* paragraph : {title_, text_}) paragraph->setAlignment(Qt::AlignHCenter);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  column->addWidget(title_);
  column->addWidget(text_);
  column->addSpacing(14);
  column->addLayout(content_, 1);
}

void OnboardingStep::setEmblem(QWidget* emblem) {
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->insertWidget(0, emblem, 0, Qt::AlignHCenter);
  column->insertSpacing(1, 10);
}

void OnboardingStep::setHeading(const QString& title, const QString& text) {
  title_->setText(title);
  text_->setText(text);
  setAccessibleName(title);
  setAccessibleDescription(text);
}

void OnboardingStep::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) retranslate();
}

}  // namespace quillmeter
