#include "ui/system/X11Server.h"

#include <cstdlib>

#include <xcb/xcb.h>
#include <QtGui/QGuiApplication>

namespace quillmeter::X11Server {

xcb_connection_t* connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

std::uint32_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
  const xcb_atom_t result = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
  std::free(reply);
  return result;
}

std::uint32_t selectionOwner(xcb_connection_t* connection, std::uint32_t selection) {
  const auto cookie = xcb_get_selection_owner(connection, selection);
  xcb_get_selection_owner_reply_t* reply = xcb_get_selection_owner_reply(connection, cookie, nullptr);
  const xcb_window_t result = reply == nullptr ? xcb_window_t{XCB_WINDOW_NONE} : reply->owner;
  std::free(reply);
  return result;
}

}  // namespace quillmeter::X11Server
