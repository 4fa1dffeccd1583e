#pragma once

#include "platform/AudioHardware.h"
#include "platform/NetworkPathMonitor.h"
#include "platform/WifiClient.h"
#include "quickstatus/model/QuickStatusSnapshot.h"

namespace quillmeter {

QuickConnection connectionOf(const NetworkPath& path);

// Everything of a snapshot but the connection, which comes from the path. On the quick-status queue, or in a program
// that has none.
QuickStatusSnapshot readQuickStatus(WifiClient& wifi, AudioHardware& audio);

}  // namespace quillmeter
