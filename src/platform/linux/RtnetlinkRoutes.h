#pragma once

#include <functional>

#include "base/FileDescriptor.h"
#include "platform/linux/Rtnetlink.h"

namespace quillmeter {

// A socket on which the kernel announces changes of `groups` (RTMGRP_...); without descriptor when there is none to be
// had.
FileDescriptor openAnnouncements(unsigned groups);
// Takes what has been announced there, but no more than so many datagrams, and hands over each message. False when
// announcements were lost, so that anything may have changed.
bool takeAnnouncements(const FileDescriptor& announcements, int mostDatagrams,
                       const std::function<void(const RtnetlinkMessage&)>& visit);

// Whether a route message is a usable way to everywhere of the main table.
bool isDefaultRoute(const RtnetlinkMessage& message);

// The interface of a route; of one with several ways, that of the first. 0 when it names none.
int interfaceOf(const RtnetlinkMessage& route);

}  // namespace quillmeter
