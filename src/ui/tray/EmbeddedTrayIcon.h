#pragma once

#include <QObject>
#include <QSystemTrayIcon>

#include "ui/tray/TrayContent.h"

namespace quillmeter {

// The item in an X11 tray, a window of ours inside the tray's: the toolkit's own implementation. The icon is painted in
// the size of that window, the tooltip is put together when the pointer rests on it. Owned by the tray item; main
// thread; the content outlives it.
class EmbeddedTrayIcon final : public QObject, public TrayBackend {
 public:
  explicit EmbeddedTrayIcon(TrayContent& content);

  void iconChanged() override;
  void tooltipChanged(double) override {}
  void textsChanged() override {}

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class Engine;
  void activated(QSystemTrayIcon::ActivationReason reason);

  TrayContent& content_;
  QSystemTrayIcon icon_;
};

}  // namespace quillmeter
