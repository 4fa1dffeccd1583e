#pragma once

namespace quillmeter::ctl {

// How the tool ends, as its callers rely on it.
enum class ExitCode {
  done = 0,
  couldNot = 1,
  wrongUse = 2,
  readerGone = 141,  // standard output's reader left: what a shell shows for a program that SIGPIPE ended
};

}  // namespace quillmeter::ctl
