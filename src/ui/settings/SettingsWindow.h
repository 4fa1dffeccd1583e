#pragma once

#include <memory>
#include <string_view>

#include <QWidget>

#include "ui/UiServices.h"

namespace quillmeter {

// The settings, a page a subject. Made when it is opened and gone when it is closed; the last page is remembered.
class SettingsWindow : public QWidget {
 public:
  explicit SettingsWindow(const UiServices& services);
  ~SettingsWindow() override;
  // "general", "menuBar", "components", "agents", "screenTime", "about"; any other is ignored.
  void showPage(std::string_view page);

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void retranslate();
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmeter
