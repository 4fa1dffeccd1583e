#include "ui/popover/WindowSystem.h"

#include <cstdint>

#include <xcb/xcb.h>
#include <QGuiApplication>
#include <QWidget>

#include "ui/system/X11Server.h"

namespace quillmeter::WindowSystem {

namespace {

bool isWayland() {
  return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

}  // namespace

bool composes() {
  xcb_connection_t* connection = X11Server::connection();
  return connection == nullptr ||
         X11Server::selectionOwner(connection, X11Server::atom(connection, "_NET_WM_CM_S0")) != XCB_WINDOW_NONE;
}

bool placesWindows() {
  return !isWayland();
}

void takeFocus(QWidget& window) {
  window.activateWindow();
  xcb_connection_t* connection = X11Server::connection();
  if (connection == nullptr) return;
  constexpr std::uint32_t fromPanel = 2;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = static_cast<xcb_window_t>(window.winId());
  message.type = X11Server::atom(connection, "_NET_ACTIVE_WINDOW");
  message.data.data32[0] = fromPanel;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

}  // namespace quillmeter::WindowSystem
