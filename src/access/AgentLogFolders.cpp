#include "access/AgentLogFolders.h"

#include <algorithm>
#include <string>
#include <utility>

namespace quillmeter {

namespace {

namespace fs = std::filesystem;
using Provider = AgentLogProvider;

constexpr std::string_view homePrefix = "~/";

// "/a/b/" and "/a/./b" are "/a/b".
fs::path plain(const fs::path& path) {
  fs::path result = path.lexically_normal();
  if (!result.has_filename() && result.has_relative_path()) result = result.parent_path();
  return result;
}

// Resolves `path` up to its last ".." as the file system does it: behind a link, ".." is not the folder that is written
// before it. What does not exist is resolved by its text.
fs::path withoutParentSteps(const fs::path& path, const FolderProbe& probe) {
  fs::path upToLastStep;
  fs::path behind;
  for (const fs::path& component : path) {
    behind /= component;
    if (component == "..") upToLastStep /= std::exchange(behind, {});
  }
  if (upToLastStep.empty()) return path;
  const auto resolved = probe.canonical(upToLastStep);
  if (!resolved) return path;
  return behind.empty() ? *resolved : *resolved / behind;
}

// The program by which an agent is detected; empty for those that have none.
std::string_view executableName(Provider provider) {
  switch (provider) {
    case Provider::codex:
    case Provider::claude:
    case Provider::opencode:
    case Provider::hermes:
    case Provider::openclaw:
    case Provider::pi:
      return rawValue(provider);
    case Provider::qwenOffice:
    case Provider::workBuddy:
      break;
  }
  return {};
}

// The desktop application by which an agent is detected; empty for those that have none.
std::string_view applicationName(Provider provider) {
  if (provider == Provider::codex) return "Codex";
  if (provider == Provider::workBuddy) return "WorkBuddy";
  return {};
}

// What stands between a picked folder and its scan root; empty where the folder itself is scanned.
std::string_view scanTail(Provider provider) {
  switch (provider) {
    case Provider::codex:
    case Provider::pi:
      return "sessions";
    case Provider::claude:
    case Provider::workBuddy:
      return "projects";
    case Provider::qwenOffice:
      return "logs/sessions";
    case Provider::openclaw:
      return "agents";
    case Provider::opencode:
    case Provider::hermes:
      break;
  }
  return {};
}

bool mustBeNamedAsExpected(Provider provider) {
  return provider == Provider::codex || provider == Provider::claude || provider == Provider::qwenOffice ||
         provider == Provider::workBuddy;
}

bool holdsDatabase(Provider provider, const fs::path& picked, const FolderProbe& probe) {
  if (provider == Provider::opencode)
    return probe.exists(picked / "opencode.db") || probe.exists(picked / "storage/message");
  if (provider == Provider::hermes) return probe.exists(picked / "state.db");
  return true;
}

}  // namespace

AgentSearchPlaces AgentSearchPlaces::standard(const fs::path& home, std::string_view searchPath) {
  AgentSearchPlaces places;
  places.homeDirectory = home;
  while (!searchPath.empty()) {
    const std::size_t end = std::min(searchPath.find(':'), searchPath.size());
    if (searchPath.front() == '/') places.executableDirectories.emplace_back(searchPath.substr(0, end));
    searchPath.remove_prefix(std::min(end + 1, searchPath.size()));
  }
  for (fs::path folder :
       {fs::path("/opt/homebrew/bin"), fs::path("/usr/local/bin"), home / ".local/bin", home / ".npm-global/bin"}) {
    places.executableDirectories.push_back(std::move(folder));
  }
  places.applicationDirectories = {"/Applications", home / "Applications"};
  return places;
}

std::optional<fs::path> normalizedFolder(const fs::path& folder, const fs::path& home, const FolderProbe& probe) {
  const std::string& text = folder.native();
  if (text.empty() || text.find('\0') != std::string::npos) return std::nullopt;
  fs::path absolute = folder;
  if (text == "~" || text.starts_with(homePrefix)) {
    const std::size_t start = text.find_first_not_of('/', 1);
    absolute = start == std::string::npos ? home : home / text.substr(start);
  } else if (folder.is_relative()) {
    const auto workingFolder = probe.canonical(".");
    if (!workingFolder) return std::nullopt;
    absolute = *workingFolder / folder;
  }
  if (absolute.is_relative()) return std::nullopt;  // "~" without a home
  return plain(withoutParentSteps(absolute, probe));
}

fs::path expectedFolderPath(Provider provider, const fs::path& home) {
  return home / expectedFolder(provider).substr(homePrefix.size());
}

tl::expected<fs::path, AgentLogAccessError> scanRoot(Provider provider, const fs::path& picked,
                                                     const FolderProbe& probe) {
  if (mustBeNamedAsExpected(provider) && picked.filename() != expectedFolder(provider).substr(homePrefix.size())) {
    return tl::unexpected(AgentLogAccessError::unexpectedFolder(provider));
  }
  if (!holdsDatabase(provider, picked, probe)) return tl::unexpected(AgentLogAccessError::missingLogFolder(provider));
  const std::string_view tail = scanTail(provider);
  fs::path root = tail.empty() ? picked : picked / tail;
  if (!probe.isDirectory(root)) return tl::unexpected(AgentLogAccessError::missingLogFolder(provider));
  return root;
}

tl::expected<AgentLogLocation, AgentLogAccessError> locationFromPickedFolder(Provider provider, const fs::path& picked,
                                                                             const fs::path& home,
                                                                             const FolderProbe& probe) {
  const auto folder = normalizedFolder(picked, home, probe);
  if (!folder) return tl::unexpected(AgentLogAccessError::missingLogFolder(provider));
  auto root = scanRoot(provider, *folder, probe);
  if (!root) return tl::unexpected(root.error());
  if (!probe.isReadable(*root)) return tl::unexpected(AgentLogAccessError::bookmarkCreationFailed());
  return AgentLogLocation{*folder, std::move(*root)};
}

bool isInstalled(Provider provider, const AgentSearchPlaces& places, const FolderProbe& probe,
                 InstalledApplications* applications) {
  if (probe.isDirectory(expectedFolderPath(provider, places.homeDirectory))) return true;
  if (const std::string_view name = executableName(provider); !name.empty()) {
    const auto holdsProgram = [&](const fs::path& folder) { return probe.isExecutableFile(folder / name); };
    if (std::ranges::any_of(places.executableDirectories, holdsProgram)) return true;
  }
  const std::string_view application = applicationName(provider);
  if (application.empty()) return false;
  const std::string bundle = std::string(application) + ".app";
  const auto holdsBundle = [&](const fs::path& folder) { return probe.isDirectory(folder / bundle); };
  if (std::ranges::any_of(places.applicationDirectories, holdsBundle)) return true;
  return applications != nullptr && applications->contains(application);
}

}  // namespace quillmeter
