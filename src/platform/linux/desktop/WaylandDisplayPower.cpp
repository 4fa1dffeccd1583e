#include "platform/linux/desktop/WaylandDisplayPower.h"

#include <algorithm>

#include <wayland-client.h>

#include <kde-dpms-client-protocol.h>
#include <wlr-output-power-management-unstable-v1-client-protocol.h>

namespace quillmeter {

struct WaylandDisplayPower::Listener {
  static void mode(void* self, zwlr_output_power_v1*, std::uint32_t mode) {
    auto& output = *static_cast<Output*>(self);
    output.isDark = mode == ZWLR_OUTPUT_POWER_V1_MODE_OFF;
    output.owner->update();
  }
  // This output cannot be asked; it counts as lit.
  static void failed(void* self, zwlr_output_power_v1* power) {
    auto& output = *static_cast<Output*>(self);
    zwlr_output_power_v1_destroy(power);
    output.power = nullptr;
    output.isDark = false;
    output.owner->update();
  }
  static void dpmsSupported(void*, org_kde_kwin_dpms*, std::uint32_t) {}
  static void dpmsMode(void* self, org_kde_kwin_dpms*, std::uint32_t mode) {
    static_cast<Output*>(self)->pendingDark = mode != ORG_KDE_KWIN_DPMS_MODE_ON;
  }
  static void dpmsDone(void* self, org_kde_kwin_dpms*) {
    auto& output = *static_cast<Output*>(self);
    output.isDark = output.pendingDark;
    output.owner->update();
  }
  static constexpr zwlr_output_power_v1_listener powerListener{mode, failed};
  static constexpr org_kde_kwin_dpms_listener dpmsListener{dpmsSupported, dpmsMode, dpmsDone};
};

WaylandDisplayPower::WaylandDisplayPower(WaylandConnection& connection) : connection_(connection) {
  powerManager_ =
      static_cast<zwlr_output_power_manager_v1*>(connection_.bind(zwlr_output_power_manager_v1_interface, 1));
  if (powerManager_ == nullptr) {
    dpmsManager_ = static_cast<org_kde_kwin_dpms_manager*>(connection_.bind(org_kde_kwin_dpms_manager_interface, 1));
  }
  if (powerManager_ == nullptr && dpmsManager_ == nullptr) return;
  connection_.setOutputHandler([this](std::uint32_t name, bool present) { outputChanged(name, present); });
  connection_.flush();
}

WaylandDisplayPower::~WaylandDisplayPower() {
  connection_.setOutputHandler({});
  for (auto& [name, output] : outputs_) release(output);
  if (powerManager_ != nullptr) zwlr_output_power_manager_v1_destroy(powerManager_);
  if (dpmsManager_ != nullptr) org_kde_kwin_dpms_manager_destroy(dpmsManager_);
}

void WaylandDisplayPower::outputChanged(std::uint32_t name, bool present) {
  if (!present) {
    if (const auto gone = outputs_.find(name); gone != outputs_.end()) {
      release(gone->second);
      outputs_.erase(gone);
    }
    update();
    return;
  }
  Output& output = outputs_[name];
  output.owner = this;
  output.output = static_cast<wl_output*>(connection_.bindNumbered(name, wl_output_interface, 1));
  if (powerManager_ != nullptr) {
    output.power = zwlr_output_power_manager_v1_get_output_power(powerManager_, output.output);
    zwlr_output_power_v1_add_listener(output.power, &Listener::powerListener, &output);
  } else {
    output.dpms = org_kde_kwin_dpms_manager_get(dpmsManager_, output.output);
    org_kde_kwin_dpms_add_listener(output.dpms, &Listener::dpmsListener, &output);
  }
  connection_.flush();
}

void WaylandDisplayPower::release(Output& output) {
  if (output.power != nullptr) zwlr_output_power_v1_destroy(output.power);
  if (output.dpms != nullptr) org_kde_kwin_dpms_release(output.dpms);
  wl_output_destroy(output.output);
}

void WaylandDisplayPower::update() {
  const bool asleep =
      !outputs_.empty() && std::ranges::all_of(outputs_, [](const auto& entry) { return entry.second.isDark; });
  if (asleep == asleep_) return;
  asleep_ = asleep;
  if (handler_) handler_(asleep_);
}

}  // namespace quillmeter
