#pragma once

#include <memory>

#include <QWidget>

#include "ui/UiServices.h"

namespace quillmeter {

// The page of the screen-time record: the switch, a day or a week with its bars, the timeline, the applications, and
// what went wrong with the stored record.
class ScreenTimePage : public QWidget {
 public:
  explicit ScreenTimePage(const UiServices& services, QWidget* parent = nullptr);
  ~ScreenTimePage() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmeter
