#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include <QWidget>

#include "base/Observers.h"
#include "platform/PreferenceDomain.h"
#include "ui/UiServices.h"

class QVBoxLayout;

namespace quillmeter {

class Paragraph;

// One step of the onboarding: title and text in the middle, below them what the step is about. Lives as long as the
// window; is subscribed to anything only while it is shown.
class OnboardingStep : public QWidget {
 public:
  OnboardingStep(const UiServices& services, QWidget* parent);
  virtual void retranslate() = 0;
  // Where the keys go when the step is turned to; null leaves them with the window.
  virtual QWidget* firstControl() const { return nullptr; }

 protected:
  // Shows the services' present state; called when the step comes into sight and after the changes it subscribes to.
  virtual void refresh() {}
  // What the step is about, each calling `changed`.
  virtual std::vector<Subscription> subscribe(std::function<void()> changed);

  const UiServices& services() const { return services_; }
  // Stores a choice; tells the user when that fails, and shows what is stored then.
  void store(std::string_view key, PreferenceValue value);
  // Above the title; takes ownership.
  void setEmblem(QWidget* emblem);
  void setHeading(const QString& title, const QString& text);
  QVBoxLayout* content() const { return content_; }

  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  const UiServices services_;
  std::vector<Subscription> changes_;
  Paragraph* title_ = nullptr;
  Paragraph* text_ = nullptr;
  QVBoxLayout* content_ = nullptr;
};

}  // namespace quillmeter
