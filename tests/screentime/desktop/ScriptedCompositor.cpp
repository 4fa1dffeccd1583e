// A compositor of four interfaces for the tests: outputs whose power it tells of and a seat whose idleness it tells of,
// at the test's word. For what compositors without a screen cannot do. SIGUSR1 switches all outputs off or on, SIGUSR2
// makes the user go or come back, SIGHUP plugs a second output in or out.
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <wayland-server.h>

#include <ext-idle-notify-v1-server-protocol.h>
#include <wlr-output-power-management-unstable-v1-server-protocol.h>

namespace {

wl_display* display = nullptr;
wl_global* secondOutput = nullptr;
std::vector<wl_resource*> powers;
std::vector<wl_resource*> idles;
bool lit = true;
bool idle = false;

void destroyRequested(wl_client*, wl_resource* resource) {
  wl_resource_destroy(resource);
}

void forgetPower(wl_resource* resource) {
  std::erase(powers, resource);
}
void forgetIdle(wl_resource* resource) {
  std::erase(idles, resource);
}

void tellPower(wl_resource* power) {
  zwlr_output_power_v1_send_mode(power, lit ? ZWLR_OUTPUT_POWER_V1_MODE_ON : ZWLR_OUTPUT_POWER_V1_MODE_OFF);
}

void setMode(wl_client*, wl_resource*, std::uint32_t) {}
const struct zwlr_output_power_v1_interface powerRequests { setMode, destroyRequested };

void getOutputPower(wl_client* client, wl_resource*, std::uint32_t id, wl_resource*) {
  wl_resource* power = wl_resource_create(client, &zwlr_output_power_v1_interface, 1, id);
  wl_resource_set_implementation(power, &powerRequests, nullptr, forgetPower);
  powers.push_back(power);
  tellPower(power);
}
const struct zwlr_output_power_manager_v1_interface powerManagerRequests { getOutputPower, destroyRequested };

const struct ext_idle_notification_v1_interface idleRequests { destroyRequested };
void getIdleNotification(wl_client* client, wl_resource*, std::uint32_t id, std::uint32_t timeout, wl_resource*) {
  wl_resource* notification = wl_resource_create(client, &ext_idle_notification_v1_interface, 1, id);
  wl_resource_set_implementation(notification, &idleRequests, nullptr, forgetIdle);
  idles.push_back(notification);
  std::printf("timeout %u\n", timeout);
  std::fflush(stdout);
}
const struct ext_idle_notifier_v1_interface idleNotifierRequests { destroyRequested, getIdleNotification };

template <const wl_interface* interface, const auto* requests>
void bind(wl_client* client, void*, std::uint32_t version, std::uint32_t id) {
  wl_resource* resource = wl_resource_create(client, interface, static_cast<int>(version), id);
  wl_resource_set_implementation(resource, requests, nullptr, nullptr);
}
void bindSilent(wl_client* client, void* interface, std::uint32_t version, std::uint32_t id) {
  wl_resource_create(client, static_cast<const wl_interface*>(interface), static_cast<int>(version), id);
}

wl_global* addOutput() {
  return wl_global_create(display, &wl_output_interface, 1, const_cast<wl_interface*>(&wl_output_interface),
                          bindSilent);
}

int togglePower(int, void*) {
  lit = !lit;
  for (wl_resource* power : powers) tellPower(power);
  return 0;
}
int toggleIdle(int, void*) {
  idle = !idle;
  for (wl_resource* notification : idles) {
    if (idle) {
      ext_idle_notification_v1_send_idled(notification);
    } else {
      ext_idle_notification_v1_send_resumed(notification);
    }
  }
  return 0;
}
int toggleOutput(int, void*) {
  // Only announced as gone, as compositors do it: a client may just be binding it.
  if (secondOutput != nullptr) wl_global_remove(secondOutput);
  secondOutput = secondOutput == nullptr ? addOutput() : nullptr;
  return 0;
}
int finish(int, void*) {
  wl_display_terminate(display);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  display = wl_display_create();
  if (argc != 2 || wl_display_add_socket(display, argv[1]) != 0) return 1;
  addOutput();
  wl_global_create(display, &wl_seat_interface, 1, const_cast<wl_interface*>(&wl_seat_interface), bindSilent);
  wl_global_create(display, &zwlr_output_power_manager_v1_interface, 1, nullptr,
                   bind<&zwlr_output_power_manager_v1_interface, &powerManagerRequests>);
  wl_global_create(display, &ext_idle_notifier_v1_interface, 1, nullptr,
                   bind<&ext_idle_notifier_v1_interface, &idleNotifierRequests>);
  wl_event_loop* loop = wl_display_get_event_loop(display);
  wl_event_loop_add_signal(loop, SIGUSR1, togglePower, nullptr);
  wl_event_loop_add_signal(loop, SIGUSR2, toggleIdle, nullptr);
  wl_event_loop_add_signal(loop, SIGHUP, toggleOutput, nullptr);
  wl_event_loop_add_signal(loop, SIGTERM, finish, nullptr);
  std::puts("ready");
  std::fflush(stdout);
  wl_display_run(display);
  wl_display_destroy_clients(display);
  wl_display_destroy(display);
  return 0;
}
