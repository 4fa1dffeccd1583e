#include "platform/linux/desktop/X11ForegroundApplication.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include <xcb/xcb.h>

#include "platform/linux/desktop/ProcessFacts.h"

namespace quillmeter {

X11ForegroundApplication::X11ForegroundApplication(XcbConnection& connection, ApplicationEntryIndex& entries,
                                                   std::filesystem::path procRoot)
    : connection_(connection),
      entries_(entries),
      procRoot_(std::move(procRoot)),
      activeWindowAtom_(connection.atom("_NET_ACTIVE_WINDOW")),
      windowManagerAtom_(connection.atom("_NET_SUPPORTING_WM_CHECK")),
      supportedAtom_(connection.atom("_NET_SUPPORTED")),
      processIdAtom_(connection.atom("_NET_WM_PID")) {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_.get(), connection_.rootWindow(), XCB_CW_EVENT_MASK, &events);
  connection_.setPropertyHandler(
      [this](std::uint32_t window, std::uint32_t property) { propertyChanged(window, property); });
  // Not every window manager takes back its word when the active window ends.
  connection_.setDestroyHandler([this](std::uint32_t window) {
    if (window == window_) application_.reset();
  });
  findWindowManager();
  readActiveWindow();
}

void X11ForegroundApplication::propertyChanged(std::uint32_t window, std::uint32_t property) {
  if (window == connection_.rootWindow()) {
    if (property != activeWindowAtom_ && property != windowManagerAtom_ && property != supportedAtom_) return;
    findWindowManager();
    readActiveWindow();
  } else if (window == window_ && property == XCB_ATOM_WM_CLASS) {
    application_ = applicationOf(window);  // some set it only after the window shows
  }
  // The property is 0 for a moment at each change: that is no news. The same window may tell of itself twice.
  if (!application_ || application_ == announced_) return;
  announced_ = application_;
  if (handler_) handler_(*announced_);
}

// A window manager that ended leaves its properties on the root window; its own window is gone then.
void X11ForegroundApplication::findWindowManager() {
  const auto window = connection_.number(connection_.rootWindow(), windowManagerAtom_, XCB_ATOM_WINDOW);
  hasWindowManager_ = false;
  if (!window || connection_.number(*window, windowManagerAtom_, XCB_ATOM_WINDOW) != window) return;
  const auto supported = connection_.numbers(connection_.rootWindow(), supportedAtom_, XCB_ATOM_ATOM);
  hasWindowManager_ = std::ranges::find(supported, activeWindowAtom_) != supported.end();
}

void X11ForegroundApplication::readActiveWindow() {
  const std::uint32_t window =
      connection_.number(connection_.rootWindow(), activeWindowAtom_, XCB_ATOM_WINDOW).value_or(0);
  if (window != window_) {
    selectEvents(window_, XCB_EVENT_MASK_NO_EVENT);
    selectEvents(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
    window_ = window;
    application_ = window != 0 ? applicationOf(window) : std::nullopt;
  }
  connection_.deferEvents();
}

// A window that is gone meanwhile answers with an error, which nobody listens to.
void X11ForegroundApplication::selectEvents(std::uint32_t window, std::uint32_t events) {
  if (window == 0 || window == connection_.rootWindow()) return;
  xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &events);
}

std::optional<RunningApplication> X11ForegroundApplication::applicationOf(std::uint32_t window) {
  // Two strings, each ended by a zero: the instance, then the class.
  const std::string names = connection_.text(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
  const std::string_view instance = std::string_view(names).substr(0, names.find('\0'));
  std::string_view windowClass = std::string_view(names).substr(std::min(instance.size() + 1, names.size()));
  windowClass = windowClass.substr(0, windowClass.find('\0'));
  if (auto application = entries_.applicationFor(windowClass, instance)) return application;
  const auto processId = connection_.number(window, processIdAtom_, XCB_ATOM_CARDINAL);
  if (!processId) return std::nullopt;
  return RunningApplication{std::nullopt, processName(procRoot_, *processId), *processId,
                            processLaunchTime(procRoot_, *processId)};
}

std::optional<RunningApplication> X11ForegroundApplication::frontmost() {
  return isSupported() ? application_ : std::nullopt;
}

}  // namespace quillmeter
