// A window of a given application id for the tests: shows, writes a line once it is on screen and stays until it is
// ended.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

#include <xdg-shell-client-protocol.h>

namespace {

constexpr int width = 64;
constexpr int height = 64;

struct Window {
  wl_compositor* compositor = nullptr;
  wl_shm* memory = nullptr;
  xdg_wm_base* shell = nullptr;
  wl_surface* surface = nullptr;
  bool shown = false;
};

void global(void* data, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
  auto& window = *static_cast<Window*>(data);
  if (std::strcmp(interface, wl_compositor_interface.name) == 0) {
    window.compositor = static_cast<wl_compositor*>(wl_registry_bind(registry, name, &wl_compositor_interface, 1));
  } else if (std::strcmp(interface, wl_shm_interface.name) == 0) {
    window.memory = static_cast<wl_shm*>(wl_registry_bind(registry, name, &wl_shm_interface, 1));
  } else if (std::strcmp(interface, xdg_wm_base_interface.name) == 0) {
    window.shell = static_cast<xdg_wm_base*>(wl_registry_bind(registry, name, &xdg_wm_base_interface, 1));
  }
}
void globalGone(void*, wl_registry*, std::uint32_t) {}
constexpr wl_registry_listener registryListener{global, globalGone};

void ping(void*, xdg_wm_base* shell, std::uint32_t serial) {
  xdg_wm_base_pong(shell, serial);
}
constexpr xdg_wm_base_listener shellListener{ping};

wl_buffer* makeBuffer(wl_shm* memory) {
  constexpr int bytes = width * height * 4;
  const int file = memfd_create("window", MFD_CLOEXEC);
  if (ftruncate(file, bytes) != 0) return nullptr;
  wl_shm_pool* pool = wl_shm_create_pool(memory, file, bytes);
  wl_buffer* buffer = wl_shm_pool_create_buffer(pool, 0, width, height, width * 4, WL_SHM_FORMAT_XRGB8888);
  wl_shm_pool_destroy(pool);
  close(file);
  return buffer;
}

void configured(void* data, xdg_surface* surface, std::uint32_t serial) {
  auto& window = *static_cast<Window*>(data);
  xdg_surface_ack_configure(surface, serial);
  if (!window.shown) wl_surface_attach(window.surface, makeBuffer(window.memory), 0, 0);
  wl_surface_commit(window.surface);
  if (!window.shown) std::puts("shown");
  std::fflush(stdout);
  window.shown = true;
}
constexpr xdg_surface_listener surfaceListener{configured};

void toplevelConfigured(void*, xdg_toplevel*, std::int32_t, std::int32_t, wl_array*) {}
void toplevelClosed(void*, xdg_toplevel*) {}
constexpr xdg_toplevel_listener toplevelListener{toplevelConfigured, toplevelClosed, nullptr, nullptr};

}  // namespace

int main(int argc, char** argv) {
  wl_display* display = wl_display_connect(nullptr);
  if (argc != 2 || display == nullptr) return 1;
  Window window;
  wl_registry_add_listener(wl_display_get_registry(display), &registryListener, &window);
  wl_display_roundtrip(display);
  if (window.compositor == nullptr || window.memory == nullptr || window.shell == nullptr) return 1;
  xdg_wm_base_add_listener(window.shell, &shellListener, nullptr);
  window.surface = wl_compositor_create_surface(window.compositor);
  xdg_surface* surface = xdg_wm_base_get_xdg_surface(window.shell, window.surface);
  xdg_surface_add_listener(surface, &surfaceListener, &window);
  xdg_toplevel* toplevel = xdg_surface_get_toplevel(surface);
  xdg_toplevel_add_listener(toplevel, &toplevelListener, nullptr);
  xdg_toplevel_set_app_id(toplevel, argv[1]);
  xdg_toplevel_set_title(toplevel, "a title that nobody may record");
  wl_surface_commit(window.surface);
  while (wl_display_dispatch(display) >= 0) continue;
  return 0;
}
