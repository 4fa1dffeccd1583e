#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "access/AgentLogAccessError.h"
#include "access/model/AgentLogProvider.h"

namespace quillmeter {

// A sentence that is looked up when it is shown, so that it follows a change of language.
struct AuthorizationMessage {
  std::string_view format = {};                   // a text of the catalogue; empty for an error's own text
  std::optional<AgentLogProvider> provider = {};  // its title fills "%@"
  std::optional<int> count = {};                  // fills "%d"
  std::optional<AgentLogAccessError> accessError = {};

  std::string localized() const;

  friend bool operator==(const AuthorizationMessage&, const AuthorizationMessage&) = default;
};

// How the last connecting ended.
struct AgentAuthorizationFeedback {
  enum class Kind { success, notice, error };

  Kind kind = Kind::success;
  AuthorizationMessage content;

  std::string message() const { return content.localized(); }

  friend bool operator==(const AgentAuthorizationFeedback&, const AgentAuthorizationFeedback&) = default;
};

}  // namespace quillmeter
