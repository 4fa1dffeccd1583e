#pragma once

#include "base/FileDescriptor.h"
#include "platform/linux/Rtnetlink.h"

namespace quillmeter {

// A socket on which the kernel announces changes of `groups` (RTMGRP_...); without descriptor when there is none to be
// had.
FileDescriptor openAnnouncements(unsigned groups);

// Whether a route message is a usable way to everywhere of the main table.
bool isDefaultRoute(const RtnetlinkMessage& message);

// The interface of a route; of one with several ways, that of the first. 0 when it names none.
int interfaceOf(const RtnetlinkMessage& route);

}  // namespace quillmeter
