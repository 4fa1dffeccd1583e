#pragma once

#include "preferences/MonitorComponentKind.h"

namespace quillmeter {

// A large card spans two columns of the grid.
enum class DashboardCardSize { small, large };

// One card of a layout. A disabled one keeps its place but is not shown.
struct DashboardCardConfig {
  MonitorComponentKind kind = MonitorComponentKind::cpu;
  DashboardCardSize size = DashboardCardSize::small;
  bool isEnabled = true;
  friend bool operator==(const DashboardCardConfig&, const DashboardCardConfig&) = default;
};

// The two places that have a layout: the dashboard window, and the menu bar's panel with its compact surfaces.
enum class ComponentPlacement { dashboard, menuBar };

}  // namespace quillmeter
