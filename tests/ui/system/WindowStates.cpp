#include "ui/system/WindowStates.h"

#include <algorithm>
#include <cstdlib>

#include <xcb/xcb.h>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace quillmeter::test {

namespace {

bool contains(const std::vector<std::uint32_t>& values, std::uint32_t value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

WindowStates::WindowStates()
    : connection_(qApp->nativeInterface<QNativeInterface::QX11Application>()->connection()),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root) {}

bool WindowStates::managerRuns() const {
  const auto check = property(root_, "_NET_SUPPORTING_WM_CHECK");
  return !check.empty() && property(check.front(), "_NET_SUPPORTING_WM_CHECK") == check;
}

bool WindowStates::isManaged(const QWidget& window) const {
  return managerRuns() && contains(property(root_, "_NET_CLIENT_LIST"), static_cast<std::uint32_t>(window.winId()));
}

bool WindowStates::skips(const QWidget& window) const {
  const auto states = property(static_cast<std::uint32_t>(window.winId()), "_NET_WM_STATE");
  return contains(states, atom("_NET_WM_STATE_SKIP_TASKBAR"));
}

// Managers take requests in their order: another number of desktops shows that the earlier ones are done. One that is
// just starting drops what comes before its own settings are read, hence the repetition.
bool WindowStates::waitForManager() const {
  if (!QTest::qWaitFor([this] { return !property(root_, "_NET_NUMBER_OF_DESKTOPS").empty(); }, 20'000)) return false;
  const std::uint32_t wanted = property(root_, "_NET_NUMBER_OF_DESKTOPS").front() % 8 + 1;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = root_;
  message.type = atom("_NET_NUMBER_OF_DESKTOPS");
  message.data.data32[0] = wanted;
  const auto isDone = [&] {
    if (property(root_, "_NET_NUMBER_OF_DESKTOPS") == std::vector{wanted}) return true;
    xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection_);
    return false;
  };
  return QTest::qWaitFor(isDone, 20'000);
}

void WindowStates::forgetManager() const {
  for (const char* name : {"_NET_CLIENT_LIST", "_NET_SUPPORTING_WM_CHECK", "_NET_NUMBER_OF_DESKTOPS"}) {
    xcb_delete_property(connection_, root_, atom(name));
  }
  xcb_flush(connection_);
}

std::uint32_t WindowStates::atom(const std::string& name) const {
  auto* reply = xcb_intern_atom_reply(
      connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
  const xcb_atom_t result = reply->atom;
  std::free(reply);
  return result;
}

std::vector<std::uint32_t> WindowStates::property(std::uint32_t window, const std::string& name) const {
  const auto cookie = xcb_get_property(connection_, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024);
  auto* reply = xcb_get_property_reply(connection_, cookie, nullptr);
  if (reply == nullptr) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
  std::vector<std::uint32_t> values(first, first + (reply->format == 32 ? reply->value_len : 0));
  std::free(reply);
  return values;
}

}  // namespace quillmeter::test
