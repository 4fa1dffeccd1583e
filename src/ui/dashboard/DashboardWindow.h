#pragma once

#include <memory>
#include <string_view>

#include <QWidget>

#include "ui/UiServices.h"

namespace quillmeter {

// The main window: a sidebar and its pages, overview, agents and screen time. Made when it is opened and gone when it
// is closed, so that a closed window costs nothing; the last page is remembered in the settings.
class DashboardWindow : public QWidget {
 public:
  explicit DashboardWindow(const UiServices& services);
  ~DashboardWindow() override;
  // "overview", "agents", "screenTime"; any other is ignored.
  void showPage(std::string_view page);

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Parts;
  bool pressWithControl(int key);
  void turnTo(std::string_view page);

  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmeter
