#pragma once

#include <string>
#include <string_view>

namespace quillmeter::ctl {

// How the user calls the tool, for the commands that it proposes: the value of QUILLMETER_COMMAND when a wrapper set
// it, else the program as it was called.
std::string toolCommandName(const char* wrapper, std::string_view program);

// `word` quoted for a POSIX shell where it needs to be.
std::string shellQuoted(std::string_view word);

}  // namespace quillmeter::ctl
