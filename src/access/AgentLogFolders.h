#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

#include "access/AgentLogAccessError.h"
#include "access/model/AgentLogLocation.h"
#include "access/model/AgentLogProvider.h"
#include "platform/FolderProbe.h"
#include "platform/InstalledApplications.h"

namespace quillmeter {

// Where agents are looked for on this machine.
struct AgentSearchPlaces {
  std::filesystem::path homeDirectory;
  std::vector<std::filesystem::path> executableDirectories;
  std::vector<std::filesystem::path> applicationDirectories;

  // `searchPath` is the value of PATH: its entries that begin with "/", then the usual folders.
  static AgentSearchPlaces standard(const std::filesystem::path& home, std::string_view searchPath);
};

// `folder` as the user gave it, made absolute and plain: "~" is `home`, "." and ".." and trailing slashes are gone.
// Links stay, for the last component's name is what counts; only a part before ".." is resolved as the file system does
// it. Absent for an empty path or one with a zero byte.
std::optional<std::filesystem::path> normalizedFolder(const std::filesystem::path& folder,
                                                      const std::filesystem::path& home, const FolderProbe& probe);

// The expected folder below `home`: where a picker starts and what `connect` takes by default.
std::filesystem::path expectedFolderPath(AgentLogProvider provider, const std::filesystem::path& home);

// The folder that is scanned inside a picked, normalised folder.
tl::expected<std::filesystem::path, AgentLogAccessError> scanRoot(AgentLogProvider provider,
                                                                  const std::filesystem::path& picked,
                                                                  const FolderProbe& probe);

// normalizedFolder and scanRoot together, with the check that the scan root can be read: a location without a stored
// grant.
tl::expected<AgentLogLocation, AgentLogAccessError> locationFromPickedFolder(AgentLogProvider provider,
                                                                             const std::filesystem::path& picked,
                                                                             const std::filesystem::path& home,
                                                                             const FolderProbe& probe);

// Whether the agent looks installed: its folder, its program or its application is there. `applications` may be null.
bool isInstalled(AgentLogProvider provider, const AgentSearchPlaces& places, const FolderProbe& probe,
                 InstalledApplications* applications);

}  // namespace quillmeter
