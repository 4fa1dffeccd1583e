#include "ui/onboarding/OnboardingWindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/AppActions.h"
#include "ui/onboarding/AgentsStep.h"
#include "ui/onboarding/FinishStep.h"
#include "ui/onboarding/MenuBarStep.h"
#include "ui/onboarding/StepDots.h"
#include "ui/onboarding/WelcomeStep.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Typography.h"

namespace quillmeter {
namespace {

constexpr QSize windowSize(620, 520);
constexpr int stepCount = 4;

}  // namespace

struct OnboardingWindow::Parts {
  Parts(OnboardingWindow& owner, const UiServices& uiServices);

  QHBoxLayout* makeFooter();
  void turnTo(int step);
  void turnBy(int steps) { turnTo(stack->currentIndex() + steps); }
  void advance();
  bool isLast() const { return stack->currentIndex() == stepCount - 1; }
  bool press(const QKeyEvent& event);
  void markDone() const;
  void retranslate() const;

  OnboardingWindow& window;
  const UiServices services;
  QStackedWidget* stack = nullptr;
  StepDots* dots = nullptr;
  QPushButton* skip = nullptr;
  QPushButton* back = nullptr;
  QPushButton* next = nullptr;
};

OnboardingWindow::Parts::Parts(OnboardingWindow& owner, const UiServices& uiServices)
    : window(owner), services(uiServices) {
  stack = new QStackedWidget;
  stack->addWidget(new WelcomeStep(services, stack));
  stack->addWidget(new AgentsStep(services, stack));
  stack->addWidget(new MenuBarStep(services, stack));
  stack->addWidget(new FinishStep(services, stack));
  auto* column = new QVBoxLayout(&window);
  column->setContentsMargins(36, 32, 36, 20);
  column->setSpacing(18);
  column->addWidget(stack, 1);
  column->addLayout(makeFooter());
  turnTo(0);
}

QHBoxLayout* OnboardingWindow::Parts::makeFooter() {
  dots = new StepDots(stepCount, &window);
  skip = new QPushButton(&window);
  skip->setObjectName("onboarding.skip");
  skip->setFlat(true);
  back = new QPushButton(&window);
  back->setObjectName("onboarding.back");
  next = new QPushButton(&window);
  next->setObjectName("onboarding.next");
  next->setDefault(true);
  QObject::connect(skip, &QPushButton::clicked, &window, [this] { window.close(); });
  QObject::connect(back, &QPushButton::clicked, &window, [this] { turnBy(-1); });
  QObject::connect(next, &QPushButton::clicked, &window, [this] { advance(); });

  // Equal outer parts keep the dots in the middle of the window.
  auto* right = new QHBoxLayout;
  right->setSpacing(10);
  right->addStretch(1);
  right->addWidget(back);
  right->addWidget(next);
  auto* left = new QHBoxLayout;
  left->addWidget(skip);
  left->addStretch(1);
  auto* footer = new QHBoxLayout;
  footer->addLayout(left, 1);
  footer->addWidget(dots);
  footer->addLayout(right, 1);
  return footer;
}

void OnboardingWindow::Parts::turnTo(int step) {
  if (step < 0 || step >= stepCount) return;
  stack->setCurrentIndex(step);
  dots->setCurrent(step);
  back->setVisible(step > 0);
  retranslate();
  auto* shown = dynamic_cast<OnboardingStep*>(stack->currentWidget());
  QWidget* control = shown != nullptr ? shown->firstControl() : nullptr;
  (control != nullptr ? control : next)->setFocus(Qt::OtherFocusReason);
}

void OnboardingWindow::Parts::advance() {
  if (!isLast()) return turnBy(1);
  // First, so that there is always a window open.
  services.actions.showDashboard();
  window.close();
}

// Return acts like the button that has the focus, else it goes on.
bool OnboardingWindow::Parts::press(const QKeyEvent& event) {
  const bool withAlt = event.modifiers().testFlag(Qt::AltModifier);
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: {
      auto* button = dynamic_cast<QPushButton*>(window.focusWidget());
      button != nullptr && button->isEnabled() ? button->click() : advance();
      return true;
    }
    case Qt::Key_Escape:
      window.close();
      return true;
    case Qt::Key_PageDown:
      if (!isLast()) turnBy(1);
      return true;
    case Qt::Key_PageUp:
      turnBy(-1);
      return true;
    case Qt::Key_Right:
      if (withAlt && !isLast()) turnBy(1);
      return withAlt;
    case Qt::Key_Left:
      if (withAlt) turnBy(-1);
      return withAlt;
    default:
      return false;
  }
}

void OnboardingWindow::Parts::markDone() const {
  PreferenceStore& preferences = services.preferences;
  if (preferences.value(SettingsKeys::onboardingVersion) >= SettingsKeys::currentOnboardingVersion) return;
  const auto stored = preferences.set(SettingsKeys::onboardingVersion.key, SettingsKeys::currentOnboardingVersion);
  if (!stored) services.actions.preferenceFailed(stored.error());
}

void OnboardingWindow::Parts::retranslate() const {
  window.setWindowTitle(qtText(QM_TR("欢迎使用 Quillmeter")));
  skip->setText(qtText(isLast() ? QM_TR("完成") : QM_TR("跳过")));
  back->setText(qtText(QM_TR("上一步")));
  next->setText(qtText(isLast() ? QM_TR("打开仪表盘") : QM_TR("继续")));
  dots->retranslate();
}

OnboardingWindow::OnboardingWindow(const UiServices& services) {
  setObjectName("onboarding");
  keepRoomForText(*this, windowSize);
  resize(windowSize);
  parts_ = std::make_unique<Parts>(*this, services);
}

OnboardingWindow::~OnboardingWindow() = default;

void OnboardingWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange && parts_) parts_->retranslate();
  if (event->type() == QEvent::FontChange) keepRoomForText(*this, windowSize);
}

void OnboardingWindow::closeEvent(QCloseEvent* event) {
  parts_->markDone();
  event->accept();
}

void OnboardingWindow::keyPressEvent(QKeyEvent* event) {
  if (!parts_->press(*event)) QWidget::keyPressEvent(event);
}

}  // namespace quillmeter
