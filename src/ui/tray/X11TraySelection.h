#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include <QAbstractNativeEventFilter>
#include <QObject>

#include "ui/tray/PanelAppearance.h"

struct xcb_connection_t;

namespace quillmeter {

// The X11 tray of the first screen: whether there is one, and the colour that it wants its items' text in. Follows both
// by the server's events, without polling. Owned by the tray item; main thread; the QGuiApplication outlives it.
class X11TraySelection final : public QObject, public QAbstractNativeEventFilter {
 public:
  // Null where there is no X server.
  static std::unique_ptr<X11TraySelection> ofApplication(std::function<void()> changed);
  ~X11TraySelection() override;

  bool hasTray() const { return tray_ != 0; }
  const std::optional<TrayForeground>& foreground() const { return foreground_; }
  // Asks for the tray's events again: the toolkit asks for its own on the same window, which replaces ours.
  void listen() const;

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  X11TraySelection(xcb_connection_t* connection, int screen, std::function<void()> changed);
  void look();
  void lookSoon();
  std::optional<TrayForeground> readForeground() const;

  xcb_connection_t* connection_;
  std::function<void()> changed_;
  std::uint32_t selection_, manager_, colors_;  // atoms
  std::uint32_t tray_ = 0;                      // its window
  std::optional<TrayForeground> foreground_;
  bool lookPending_ = false;
};

}  // namespace quillmeter
