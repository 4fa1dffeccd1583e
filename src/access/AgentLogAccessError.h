#pragma once

#include <optional>
#include <string>
#include <utility>

#include "access/model/AgentLogProvider.h"
#include "platform/PreferenceDomain.h"

namespace quillmeter {

// Why a folder was not granted.
struct AgentLogAccessError {
  enum class Kind { unexpectedFolder, missingLogFolder, selectionCancelled, bookmarkCreationFailed };

  Kind kind = Kind::selectionCancelled;
  std::optional<AgentLogProvider> provider;  // of the first two kinds
  std::optional<PreferenceProblem> cause{};  // of the last, where the settings could not be written

  static AgentLogAccessError unexpectedFolder(AgentLogProvider provider) { return {Kind::unexpectedFolder, provider}; }
  static AgentLogAccessError missingLogFolder(AgentLogProvider provider) { return {Kind::missingLogFolder, provider}; }
  static AgentLogAccessError selectionCancelled() { return {Kind::selectionCancelled, std::nullopt}; }
  static AgentLogAccessError bookmarkCreationFailed(std::optional<PreferenceProblem> cause = std::nullopt) {
    return {Kind::bookmarkCreationFailed, std::nullopt, std::move(cause)};
  }

  // One sentence for the user; a cancelled selection has none.
  std::optional<std::string> errorDescription() const;

  friend bool operator==(const AgentLogAccessError&, const AgentLogAccessError&) = default;
};

}  // namespace quillmeter
