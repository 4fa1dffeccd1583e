#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "agents/model/FileSignature.h"
#include "base/Date.h"
#include "base/DirectoryWalk.h"

namespace quillmeter {

// One candidate log file as the listing found it. The path is kept as text: a std::filesystem::path splits itself into
// components when it is made, which costs more than the rest of a listing.
struct LogFile {
  std::string path;
  Date modifiedAt;
  std::int64_t size = 0;  // bytes

  FileSignature signature() const { return {modifiedAt, size}; }
};

struct LogListing {
  std::vector<LogFile> files;
  int unlistedFolders = 0;                   // folders that could not be listed
  std::vector<UnlistedFolder> namedFolders;  // the first of them
};

// The regular files below `root` (hidden ones too) with the extension "jsonl" in any case, modified at or after
// `since`; newest first, equal dates by path.
LogListing recentJSONLFiles(const std::filesystem::path& root, Date since);

}  // namespace quillmeter
