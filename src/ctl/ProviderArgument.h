#pragma once

#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "access/model/AgentLogProvider.h"

namespace quillmeter::ctl {

// The agent named on the command line by its raw value, or the sentence that says which there are.
tl::expected<AgentLogProvider, std::string> providerArgument(std::string_view text);

}  // namespace quillmeter::ctl
