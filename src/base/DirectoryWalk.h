#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Date.h"

namespace quillmeter {

// One entry that a walk found. `path` is valid during the call only.
struct WalkedFile {
  const std::filesystem::path& path;
  Date modifiedAt;
  std::int64_t size = 0;  // bytes
};

struct WalkOptions {
  bool skipHidden = false;  // names that begin with "." are left out, folders with all below them
};

struct UnlistedFolder {
  std::string path;
  int error = 0;  // an errno; ENAMETOOLONG beyond the depth
};

// What could not be listed of a root that is there.
struct WalkOutcome {
  static constexpr std::size_t maximumNamed = 100;

  bool rootListed = false;
  int unlistedFolders = 0;            // folders, the root too, that could not be listed to their end
  std::vector<UnlistedFolder> named;  // the first of them
};

// Visits every regular file below `root`, folders recursively, in no particular order. `root` itself may be a link;
// links below it are neither followed nor visited. `wanted` is asked with the bare file name before the file's status
// is read, so that listing costs one status call a wanted file. Never throws; what vanishes meanwhile is left out.
// Depth is bounded (64).
WalkOutcome walkDirectory(const std::filesystem::path& root, const WalkOptions& options,
                          const std::function<bool(std::string_view name)>& wanted,
                          const std::function<void(const WalkedFile&)>& visit);

}  // namespace quillmeter
