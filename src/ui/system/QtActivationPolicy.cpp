#include "ui/system/QtActivationPolicy.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <xcb/xcb.h>
#include <QtCore/QEvent>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace quillmeter {

namespace {

xcb_connection_t* x11Connection() {
  auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
  if (reply == nullptr) return XCB_ATOM_NONE;
  const xcb_atom_t result = reply->atom;
  std::free(reply);
  return result;
}

bool isApplicationWindow(const QWidget& widget) {
  return widget.isWindow() && (widget.windowType() == Qt::Window || widget.windowType() == Qt::Dialog);
}

// Asks the window manager, which keeps the state of mapped windows (EWMH, _NET_WM_STATE).
void setSkipsTaskbar(const QWidget& widget, bool skips) {
  xcb_connection_t* connection = x11Connection();
  if (connection == nullptr || !widget.isVisible() || !isApplicationWindow(widget)) return;
  constexpr std::uint32_t remove = 0;
  constexpr std::uint32_t add = 1;
  constexpr std::uint32_t fromApplication = 1;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = static_cast<xcb_window_t>(widget.winId());
  message.type = atom(connection, "_NET_WM_STATE");
  message.data.data32[0] = skips ? add : remove;
  message.data.data32[1] = atom(connection, "_NET_WM_STATE_SKIP_TASKBAR");
  message.data.data32[3] = fromApplication;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

}  // namespace

// Hides windows that open while the program is not listed.
class QtActivationPolicy::WindowFilter final : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* widget = event->type() == QEvent::Show ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget != nullptr && !listed && widget->isWindow()) {
      QTimer::singleShot(0, widget, [widget] { setSkipsTaskbar(*widget, true); });  // once it is mapped
    }
    return QObject::eventFilter(watched, event);
  }
  bool listed = true;
};

QtActivationPolicy::QtActivationPolicy() : filter_(std::make_unique<WindowFilter>()) {
  qApp->installEventFilter(filter_.get());
}

QtActivationPolicy::~QtActivationPolicy() = default;

bool QtActivationPolicy::setListed(bool listed) {
  if (!listed && x11Connection() == nullptr) return false;
  filter_->listed = listed;
  for (const QWidget* widget : QApplication::topLevelWidgets()) setSkipsTaskbar(*widget, !listed);
  return true;
}

void QtActivationPolicy::activate() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (!widget->isVisible() || !isApplicationWindow(*widget)) continue;
    widget->raise();
    widget->activateWindow();
  }
}

}  // namespace quillmeter
