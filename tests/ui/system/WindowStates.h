#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct xcb_connection_t;
class QWidget;

namespace quillmeter::test {

// What the X server knows of windows and of the window manager.
class WindowStates {
 public:
  WindowStates();
  bool managerRuns() const;
  // Whether the running manager holds the window and keeps it off the taskbar, or holds it and lists it.
  bool isHidden(const QWidget& window) const { return isManaged(window) && skips(window); }
  bool isListed(const QWidget& window) const { return isManaged(window) && !skips(window); }
  bool skips(const QWidget& window) const;
  // Waits until the manager has done all that it was asked for before.
  bool waitForManager() const;
  // What a manager that ended left on the root window would be taken for the next one's.
  void forgetManager() const;

 private:
  bool isManaged(const QWidget& window) const;
  std::uint32_t atom(const std::string& name) const;
  std::vector<std::uint32_t> property(std::uint32_t window, const std::string& name) const;

  xcb_connection_t* connection_;
  std::uint32_t root_;
};

}  // namespace quillmeter::test
