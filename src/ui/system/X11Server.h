#pragma once

#include <cstdint>
#include <string_view>

struct xcb_connection_t;

namespace quillmeter {

// What is asked of the X server beyond what the toolkit offers. Each question waits for its answer. Main thread.
namespace X11Server {

// The application's own connection; null where there is no X server.
xcb_connection_t* connection();
std::uint32_t atom(xcb_connection_t* connection, std::string_view name);
// The window that owns a selection; 0 when nobody does.
std::uint32_t selectionOwner(xcb_connection_t* connection, std::uint32_t selection);

}  // namespace X11Server

}  // namespace quillmeter
