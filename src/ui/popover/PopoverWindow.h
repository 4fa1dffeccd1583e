#pragma once

#include <functional>
#include <memory>

#include <QWidget>

#include "ui/UiServices.h"

namespace quillmeter {

// The panel that opens at the tray icon: the cards of the menu-bar layout, active sessions, the state of the last scan
// and the ways to dashboard and settings. Closes when it loses the focus and on Escape. As high as its content, up to
// four fifths of the screen; beyond that the cards scroll. Made when it is opened and gone when it is closed.
class PopoverWindow : public QWidget {
 public:
  static constexpr int popoverWidth = 372;

  explicit PopoverWindow(const UiServices& services);
  ~PopoverWindow() override;

  // Shows it at the icon: centred on `icon` in global coordinates, or on the pointer when that is empty, within the
  // screen's free area, below an icon in the upper half and above one in the lower. Where a window cannot place itself
  // it floats.
  void showAt(const QRect& icon);
  // Called when it closes because the focus went elsewhere.
  void setLeft(std::function<void()> left);

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void fit();
  void closeIfLeft();

  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmeter
