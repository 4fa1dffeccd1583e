#include "ui/onboarding/OnboardingStep.h"

#include <utility>

#include <QEvent>
#include <QVBoxLayout>

#include "preferences/PreferenceStore.h"
#include "ui/AppActions.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {

OnboardingStep::OnboardingStep(const UiServices& services, QWidget* parent) : QWidget(parent), services_(services) {
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

std::vector<Subscription> OnboardingStep::subscribe(std::function<void()>) {
  return {};
}

void OnboardingStep::store(std::string_view key, PreferenceValue value) {
  const auto stored = services_.preferences.set(key, std::move(value));
  if (!stored) services_.actions.preferenceFailed(stored.error());
  refresh();
}

void OnboardingStep::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  changes_ = subscribe([this] { refresh(); });
  refresh();
}

void OnboardingStep::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  changes_.clear();
}

void OnboardingStep::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) retranslate();
}

}  // namespace quillmeter
