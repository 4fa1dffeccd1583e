#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>

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

// What could not be listed below a root.
struct WalkOutcome {
  bool rootListed = false;
  int unlistedFolders = 0;  // folders below the root that could not be opened
};

// Visits every regular file below `root`, folders recursively, in no particular order. `root` itself may be a link;
// links below it are neither followed nor visited. `wanted` is asked with the bare file name before the file's status
// is read, so that listing costs one status call a wanted file. Never throws; what vanishes meanwhile is left out.
// Depth is bounded (64).
WalkOutcome walkDirectory(const std::filesystem::path& root, const WalkOptions& options,
                          const std::function<bool(std::string_view name)>& wanted,
                          const std::function<void(const WalkedFile&)>& visit);

}  // namespace quillmeter
