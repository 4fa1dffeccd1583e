#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "platform/linux/desktop/DisplayPower.h"
#include "platform/linux/desktop/WaylandConnection.h"

struct org_kde_kwin_dpms;
struct org_kde_kwin_dpms_manager;
struct zwlr_output_power_manager_v1;
struct zwlr_output_power_v1;

namespace quillmeter {

// Whether the compositor has switched all its outputs off, by wlr-output-power-management or org_kde_kwin_dpms. Main
// thread.
class WaylandDisplayPower final : public DisplayPower {
 public:
  explicit WaylandDisplayPower(WaylandConnection& connection);
  WaylandDisplayPower(const WaylandDisplayPower&) = delete;
  WaylandDisplayPower& operator=(const WaylandDisplayPower&) = delete;
  ~WaylandDisplayPower() override;

  void setHandler(std::function<void(bool asleep)> handler) override { handler_ = std::move(handler); }
  bool areAsleep() const override { return asleep_; }

 private:
  // One output with the object that tells of its power. Listened to by address.
  struct Output {
    WaylandDisplayPower* owner = nullptr;
    wl_output* output = nullptr;
    zwlr_output_power_v1* power = nullptr;
    org_kde_kwin_dpms* dpms = nullptr;
    bool isDark = false;
    bool pendingDark = false;  // until "done"
  };
  struct Listener;
  void outputChanged(std::uint32_t name, bool present);
  static void release(Output& output);
  void update();

  WaylandConnection& connection_;
  zwlr_output_power_manager_v1* powerManager_ = nullptr;
  org_kde_kwin_dpms_manager* dpmsManager_ = nullptr;
  std::map<std::uint32_t, Output> outputs_;
  bool asleep_ = false;
  std::function<void(bool asleep)> handler_;
};

}  // namespace quillmeter
