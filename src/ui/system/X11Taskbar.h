#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QObject>
#include <QtCore/QTimer>

struct xcb_connection_t;
class QWindow;

namespace quillmeter {

// Keeps this program's X11 windows out of the taskbar and the pager, or in them (EWMH, _NET_WM_STATE). A window manager
// reads the property when it takes a window and owns it from then on, so both ways are used: the property is written
// while no manager holds the window, requests go to the manager otherwise, and what the manager made of it is read back
// until it agrees. A manager that starts later, or in place of another, is followed by its properties; a timer runs
// only while one owes an answer. Owned by QtActivationPolicy; main thread; the QGuiApplication outlives it.
class X11Taskbar final : public QObject, public QAbstractNativeEventFilter {
 public:
  explicit X11Taskbar(xcb_connection_t* connection);
  ~X11Taskbar() override;

  void setListed(bool listed);

  bool eventFilter(QObject* watched, QEvent* event) override;
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  void watch(bool on);
  void settleAll();
  void settleOpen();
  void settleAnew(const QWindow& window);
  void settle(const QWindow& window);
  void ask(std::uint32_t window);
  bool managerRuns() const;
  bool isManaged(std::uint32_t window) const;
  std::vector<std::uint32_t> property(std::uint32_t window, std::uint32_t name) const;
  void writeStates(std::uint32_t window, std::vector<std::uint32_t> states) const;
  void request(std::uint32_t window) const;

  xcb_connection_t* connection_;
  std::uint32_t root_;
  std::uint32_t managerCheck_, managedState_, states_, skipTaskbar_, skipPager_;  // atoms
  bool listed_ = true;
  bool isWatching_ = false;
  std::map<std::uint32_t, int> requestsLeft_;  // to the manager of each window, until another takes it
  QTimer again_;
};

}  // namespace quillmeter
