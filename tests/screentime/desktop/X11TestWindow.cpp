// A window of a given WM_CLASS for the tests: maps, takes the focus, writes its number and stays until it is ended.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(connection) != 0) return 1;
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  const xcb_window_t window = xcb_generate_id(connection);
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 200, 100, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &events);
  if (std::strcmp(argv[2], "-") != 0) {
    const std::string names = std::string(argv[1]) + '\0' + argv[2] + '\0';
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(names.size()), names.data());
  }
  const std::uint32_t hints[9] = {1, 1, 1, 0, 0, 0, 0, 0, 0};  // takes input, normal state
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, 9, hints);
  const char title[] = "a title that nobody may record";
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, sizeof title - 1,
                      title);
  const char atomName[] = "_NET_WM_PID";
  xcb_intern_atom_reply_t* atom =
      xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, sizeof atomName - 1, atomName), nullptr);
  const auto processId = static_cast<std::uint32_t>(getpid());
  if (atom != nullptr)
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom->atom, XCB_ATOM_CARDINAL, 32, 1, &processId);
  std::free(atom);
  // A window manager that is still starting loses the request; it is repeated until the window shows.
  constexpr int patienceMilliseconds = 200;
  bool mapped = false;
  pollfd socket{xcb_get_file_descriptor(connection), POLLIN, 0};
  while (xcb_connection_has_error(connection) == 0) {
    if (!mapped) {
      xcb_unmap_window(connection, window);
      xcb_map_window(connection, window);
      xcb_flush(connection);
    }
    poll(&socket, 1, mapped ? -1 : patienceMilliseconds);
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
      if ((event->response_type & 0x7fU) == XCB_MAP_NOTIFY && !mapped) {
        mapped = true;
        std::printf("%u\n", window);
        std::fflush(stdout);
      }
      std::free(event);
    }
  }
  return 0;
}
