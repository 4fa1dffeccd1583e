#pragma once

#include <string>

#include <tl/expected.hpp>

namespace quillmeter {

enum class LoginItemStatus {
  notRegistered,  // or registered and switched off by the user
  registered,
  awaitingApproval,  // registered, but the user has to allow it first
  unavailable        // this system starts nothing at login
};

// The system's list of programs that start at login, as far as it concerns this one. Main thread; nothing is kept, so
// that what the user changes in the system's own settings shows at the next question.
class LoginItems {
 public:
  virtual ~LoginItems() = default;
  virtual LoginItemStatus status() = 0;
  // The error is the system's text.
  virtual tl::expected<void, std::string> registerProgram() = 0;
  // Not being registered is no error.
  virtual tl::expected<void, std::string> unregisterProgram() = 0;
};

}  // namespace quillmeter
