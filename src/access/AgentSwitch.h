#pragma once

#include "access/model/AgentLogProvider.h"

namespace quillmeter {

class PreferenceStore;

bool isSwitchedOn(const PreferenceStore& preferences, AgentLogProvider provider);
// By the user. An agent whose switch was never touched may be off by default; connecting it changes that.
bool wasSwitchedOff(const PreferenceStore& preferences, AgentLogProvider provider);

}  // namespace quillmeter
