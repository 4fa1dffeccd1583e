#include "ui/system/X11Taskbar.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <xcb/xcb.h>
#include <QtCore/QEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include "ui/system/X11Server.h"

namespace quillmeter {

namespace {

// A manager that never agrees is left alone after these, each after twice the time of the one before.
constexpr int mostRequests = 8;
constexpr int firstPauseMilliseconds = 50;

// Those that a taskbar would list: no popups, tools or tray items, and only once they have an X11 window.
bool isApplicationWindow(const QWindow& window) {
  const auto type = window.type();
  return (type == Qt::Window || type == Qt::Dialog) && !window.flags().testFlag(Qt::BypassWindowManagerHint) &&
         window.isTopLevel() && window.handle() != nullptr;
}

xcb_window_t idOf(const QWindow& window) {
  return static_cast<xcb_window_t>(window.winId());
}

const QWindow* applicationWindow(xcb_window_t id) {
  for (const QWindow* window : QGuiApplication::topLevelWindows()) {
    if (isApplicationWindow(*window) && idOf(*window) == id) return window;
  }
  return nullptr;
}

bool contains(const std::vector<std::uint32_t>& values, std::uint32_t value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

X11Taskbar::X11Taskbar(xcb_connection_t* connection)
    : connection_(connection),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root),
      managerCheck_(X11Server::atom(connection, "_NET_SUPPORTING_WM_CHECK")),
      managedState_(X11Server::atom(connection, "WM_STATE")),
      states_(X11Server::atom(connection, "_NET_WM_STATE")),
      skipTaskbar_(X11Server::atom(connection, "_NET_WM_STATE_SKIP_TASKBAR")),
      skipPager_(X11Server::atom(connection, "_NET_WM_STATE_SKIP_PAGER")) {
  again_.setSingleShot(true);
  QObject::connect(&again_, &QTimer::timeout, this, [this] { settleOpen(); });
}

X11Taskbar::~X11Taskbar() {
  watch(false);
}

void X11Taskbar::setListed(bool listed) {
  if (listed == listed_) return;
  listed_ = listed;
  watch(true);
  settleAll();
}

// Nothing is watched while all windows are listed, as they are by themselves.
void X11Taskbar::watch(bool on) {
  if (on == isWatching_) return;
  isWatching_ = on;
  if (on) {
    qApp->installEventFilter(this);
    qApp->installNativeEventFilter(this);
  } else {
    qApp->removeEventFilter(this);
    qApp->removeNativeEventFilter(this);
  }
}

// A window about to be mapped: Qt keeps the states that it finds in the property.
bool X11Taskbar::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show && watched->isWindowType()) {
    const auto& window = static_cast<const QWindow&>(*watched);
    if (isApplicationWindow(window)) {
      // Nobody tells when a window is gone.
      std::erase_if(requestsLeft_, [](const auto& entry) { return applicationWindow(entry.first) == nullptr; });
      writeStates(idOf(window), property(idOf(window), states_));
      requestsLeft_[idOf(window)] = mostRequests;
      if (managerRuns()) again_.start(firstPauseMilliseconds);
    }
  }
  return QObject::eventFilter(watched, event);
}

bool X11Taskbar::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  constexpr int sentBit = 0x80;
  const auto& event = *static_cast<const xcb_generic_event_t*>(message);
  if ((event.response_type & ~sentBit) != XCB_PROPERTY_NOTIFY) return false;
  const auto& change = *static_cast<const xcb_property_notify_event_t*>(message);
  if (change.window == root_ && change.atom == managerCheck_) {
    settleAll();
  } else if (change.atom == managedState_) {  // a manager took the window, or gave it back
    if (const QWindow* window = applicationWindow(change.window)) settleAnew(*window);
  } else if (change.atom == states_ && requestsLeft_.contains(change.window)) {
    if (const QWindow* window = applicationWindow(change.window)) settle(*window);
  }
  return false;
}

void X11Taskbar::settleAll() {
  requestsLeft_.clear();
  for (const QWindow* window : QGuiApplication::topLevelWindows()) {
    if (isApplicationWindow(*window)) settleAnew(*window);
  }
  if (listed_ && requestsLeft_.empty()) watch(false);
}

void X11Taskbar::settleOpen() {
  for (const QWindow* window : QGuiApplication::topLevelWindows()) {
    if (isApplicationWindow(*window) && requestsLeft_.contains(idOf(*window))) settle(*window);
  }
}

void X11Taskbar::settleAnew(const QWindow& window) {
  requestsLeft_[idOf(window)] = mostRequests;
  settle(window);
}

// The manager may be taking the window at this moment, without having said so: then either it reads what is written
// here, or it receives the request once it holds the window.
void X11Taskbar::settle(const QWindow& window) {
  const xcb_window_t id = idOf(window);
  std::vector<std::uint32_t> states = property(id, states_);
  const bool agrees = contains(states, skipTaskbar_) != listed_;
  const bool isHeld = isManaged(id) && managerRuns();
  // It stays watched: a manager that is just taking the window may still write what it read before this was written.
  if (isHeld && agrees) return;
  if (!isHeld && !agrees) writeStates(id, std::move(states));
  if (isHeld || window.isVisible()) ask(id);
}

// Repeated because a manager that is just starting may leave what it received unread until more arrives (Openbox 3.6
// does), or drop it. Without a manager the property stands, and the next one announces itself.
void X11Taskbar::ask(std::uint32_t window) {
  int& left = requestsLeft_[window];
  if (left == 0) return;
  request(window);
  if (!managerRuns()) return;
  const int pause = firstPauseMilliseconds << (mostRequests - left--);
  if (!again_.isActive() || again_.remainingTime() > pause) again_.start(pause);
}

bool X11Taskbar::managerRuns() const {
  const auto check = property(root_, managerCheck_);
  if (check.empty() || check.front() == XCB_WINDOW_NONE) return false;
  return property(check.front(), managerCheck_) == check;  // one that ended by force leaves its mark on the root window
}

bool X11Taskbar::isManaged(std::uint32_t window) const {
  constexpr std::uint32_t withdrawn = 0;
  const auto state = property(window, managedState_);
  return !state.empty() && state.front() != withdrawn;
}

std::vector<std::uint32_t> X11Taskbar::property(std::uint32_t window, std::uint32_t name) const {
  constexpr std::uint32_t mostValues = 1024;
  const auto cookie = xcb_get_property(connection_, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, mostValues);
  xcb_get_property_reply_t* reply = xcb_get_property_reply(connection_, cookie, nullptr);
  if (reply == nullptr) return {};
  std::vector<std::uint32_t> values;
  if (reply->format == 32) {
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
    values.assign(first, first + reply->value_len);
  }
  std::free(reply);
  return values;
}

void X11Taskbar::writeStates(std::uint32_t window, std::vector<std::uint32_t> states) const {
  std::erase_if(states, [this](std::uint32_t state) { return state == skipTaskbar_ || state == skipPager_; });
  if (!listed_) states.insert(states.end(), {skipTaskbar_, skipPager_});
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, states_, XCB_ATOM_ATOM, 32,
                      static_cast<std::uint32_t>(states.size()), states.data());
  xcb_flush(connection_);
}

void X11Taskbar::request(std::uint32_t window) const {
  constexpr std::uint32_t remove = 0;
  constexpr std::uint32_t add = 1;
  constexpr std::uint32_t fromApplication = 1;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = states_;
  message.data.data32[0] = listed_ ? remove : add;
  message.data.data32[1] = skipTaskbar_;
  message.data.data32[2] = skipPager_;
  message.data.data32[3] = fromApplication;
  xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection_);
}

}  // namespace quillmeter
