#pragma once

#include <memory>

#include <QWidget>

#include "ui/UiServices.h"

namespace quillmeter {

// What a new user sees first: what the program shows, which agents it found and how to connect them, where it lives.
// Finishing or closing it marks the onboarding as done.
class OnboardingWindow : public QWidget {
 public:
  explicit OnboardingWindow(const UiServices& services);
  ~OnboardingWindow() override;

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmeter
