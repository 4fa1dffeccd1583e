#pragma once

#include <vector>

#include "agents/model/AgentUsageSnapshot.h"
#include "core/model/SystemSnapshot.h"
#include "menubar/MenuBarLabelRenderer.h"
#include "preferences/MonitorComponentKind.h"
#include "quickstatus/model/QuickStatusSnapshot.h"

namespace quillmeter {

class PreferenceStore;

// The component whose figures the label shows, as the settings choose it; a stored text that names none is the default
// one.
MonitorComponentKind chosenMenuBarMetric(const PreferenceStore& preferences);

// The figures of one component as the label shows them, at least one, each with its symbol; "—" for what is not known.
// The first is the one that a square label shows. Network has the download before the upload, the limits have the
// five-hour window before the week's. Pure.
std::vector<MenuBarLabelEntry> menuBarLabelEntries(MonitorComponentKind metric, const SystemSnapshot& system,
                                                   const AgentUsageSnapshot& agents, const QuickStatusSnapshot& quick);

}  // namespace quillmeter
