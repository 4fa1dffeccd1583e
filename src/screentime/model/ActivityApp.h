#pragma once

#include <string>

namespace quillmeter {

// The identity of an application whose use is recorded.
struct ActivityApp {
  std::string id;    // "org.mozilla.firefox"; without one "pid:" process id ":" launch time in seconds since 1970
  std::string name;  // in the user's language
  friend bool operator==(const ActivityApp&, const ActivityApp&) = default;
};

}  // namespace quillmeter
