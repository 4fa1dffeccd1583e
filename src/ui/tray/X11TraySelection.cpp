#include "ui/tray/X11TraySelection.h"

#include <cstdlib>
#include <string>
#include <utility>

#include <xcb/xcb.h>
#include <QGuiApplication>
#include <QTimer>

#include "ui/system/X11Server.h"

namespace quillmeter {

namespace {

// The number of the screen that the program was started on.
int screenNumber() {
  char* host = nullptr;
  int display = 0;
  int screen = 0;
  if (xcb_parse_display(nullptr, &host, &display, &screen) == 0) return 0;
  std::free(host);
  return screen;
}

}  // namespace

std::unique_ptr<X11TraySelection> X11TraySelection::ofApplication(std::function<void()> changed) {
  xcb_connection_t* connection = X11Server::connection();
  if (connection == nullptr) return nullptr;
  return std::unique_ptr<X11TraySelection>(new X11TraySelection(connection, screenNumber(), std::move(changed)));
}

X11TraySelection::X11TraySelection(xcb_connection_t* connection, int screen, std::function<void()> changed)
    : connection_(connection),
      changed_(std::move(changed)),
      selection_(X11Server::atom(connection, "_NET_SYSTEM_TRAY_S" + std::to_string(screen))),
      manager_(X11Server::atom(connection, "MANAGER")),
      colors_(X11Server::atom(connection, "_NET_SYSTEM_TRAY_COLORS")) {
  qApp->installNativeEventFilter(this);
  look();
}

X11TraySelection::~X11TraySelection() {
  qApp->removeNativeEventFilter(this);
}

void X11TraySelection::look() {
  do {  // a tray that ended before its events were asked for says nothing any more
    tray_ = X11Server::selectionOwner(connection_, selection_);
    listen();
  } while (X11Server::selectionOwner(connection_, selection_) != tray_);
  foreground_ = readForeground();
}

void X11TraySelection::listen() const {
  if (tray_ == 0) return;
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
  const auto cookie = xcb_change_window_attributes_checked(connection_, tray_, XCB_CW_EVENT_MASK, &events);
  xcb_discard_reply(connection_, cookie.sequence);  // the window may be gone already
}

std::optional<TrayForeground> X11TraySelection::readForeground() const {
  if (tray_ == 0) return std::nullopt;
  constexpr std::uint32_t values = 12;  // of four colours, the text's first
  const auto cookie = xcb_get_property(connection_, 0, tray_, colors_, XCB_ATOM_CARDINAL, 0, values);
  const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
      xcb_get_property_reply(connection_, cookie, nullptr), &std::free);
  if (!reply || reply->format != 32 || reply->value_len < 3) return std::nullopt;
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return TrayForeground{first[0], first[1], first[2]};
}

// Not from within the filter: the toolkit has to see the event first.
void X11TraySelection::lookSoon() {
  if (std::exchange(lookPending_, true)) return;
  QTimer::singleShot(0, this, [this] {
    lookPending_ = false;
    const auto before = std::pair(tray_, foreground_);
    look();
    if (std::pair(tray_, foreground_) != before) changed_();
  });
}

bool X11TraySelection::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  constexpr int sentBit = 0x80;
  const int type = static_cast<const xcb_generic_event_t*>(message)->response_type & ~sentBit;
  if (type == XCB_CLIENT_MESSAGE) {
    const auto& event = *static_cast<const xcb_client_message_event_t*>(message);
    if (event.type == manager_ && event.data.data32[1] == selection_) lookSoon();
  } else if (type == XCB_DESTROY_NOTIFY) {
    if (tray_ != 0 && static_cast<const xcb_destroy_notify_event_t*>(message)->window == tray_) lookSoon();
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const auto& event = *static_cast<const xcb_property_notify_event_t*>(message);
    if (tray_ != 0 && event.window == tray_ && event.atom == colors_) lookSoon();
  }
  return false;
}

}  // namespace quillmeter
