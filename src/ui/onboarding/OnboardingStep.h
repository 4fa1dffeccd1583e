#pragma once

#include <QWidget>

class QVBoxLayout;

namespace quillmeter {

class Paragraph;

// One step of the onboarding: title and text in the middle, below them what the step is about. Lives as long as the
// window; is subscribed to anything only while it is shown.
class OnboardingStep : public QWidget {
 public:
  explicit OnboardingStep(QWidget* parent);
  virtual void retranslate() = 0;
  // Where the keys go when the step is turned to; null leaves them with the window.
  virtual QWidget* firstControl() const { return nullptr; }

 protected:
  void changeEvent(QEvent* event) override;
  // Above the title; takes ownership.
  void setEmblem(QWidget* emblem);
  void setHeading(const QString& title, const QString& text);
  QVBoxLayout* content() const { return content_; }

 private:
  Paragraph* title_ = nullptr;
  Paragraph* text_ = nullptr;
  QVBoxLayout* content_ = nullptr;
};

}  // namespace quillmeter
