#pragma once

#include <string>
#include <vector>

#include "agents/model/AgentUsageSnapshot.h"

namespace quillmeter {

enum class TrayCommand { none, dashboard, settings, refresh, quit };

// One line of the item's menu. A separator has no text.
struct TrayMenuEntry {
  int id = 0;  // above 0, unique in the menu
  std::string text;
  TrayCommand command = TrayCommand::none;

  bool isSeparator() const { return text.empty(); }
  bool isEnabled() const { return command != TrayCommand::none; }
  friend bool operator==(const TrayMenuEntry&, const TrayMenuEntry&) = default;
};

// The item's menu in the interface language: today's tokens for reading, then what can be done. Pure.
std::vector<TrayMenuEntry> trayMenu(const AgentUsageSnapshot& agents);

}  // namespace quillmeter
