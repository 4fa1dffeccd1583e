#include "ui/popover/WindowSystem.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <xcb/xcb.h>
#include <QGuiApplication>
#include <QWidget>

namespace quillmeter::WindowSystem {

namespace {

// Null where there is no X server.
xcb_connection_t* xServer() {
  auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

bool isWayland() {
  return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
  if (reply == nullptr) return XCB_ATOM_NONE;
  const xcb_atom_t result = reply->atom;
  std::free(reply);
  return result;
}

}  // namespace

bool composes() {
  xcb_connection_t* connection = xServer();
  if (connection == nullptr) return true;
  const auto cookie = xcb_get_selection_owner(connection, atom(connection, "_NET_WM_CM_S0"));
  xcb_get_selection_owner_reply_t* reply = xcb_get_selection_owner_reply(connection, cookie, nullptr);
  const bool isOwned = reply != nullptr && reply->owner != XCB_WINDOW_NONE;
  std::free(reply);
  return isOwned;
}

bool placesWindows() {
  return !isWayland();
}

void takeFocus(QWidget& window) {
  window.activateWindow();
  xcb_connection_t* connection = xServer();
  if (connection == nullptr) return;
  constexpr std::uint32_t fromPanel = 2;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = static_cast<xcb_window_t>(window.winId());
  message.type = atom(connection, "_NET_ACTIVE_WINDOW");
  message.data.data32[0] = fromPanel;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

}  // namespace quillmeter::WindowSystem
