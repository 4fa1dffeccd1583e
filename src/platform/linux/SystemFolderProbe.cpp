#include "platform/linux/SystemFolderProbe.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <system_error>

namespace quillmeter {

namespace {

namespace fs = std::filesystem;

bool hasType(const fs::path& path, mode_t type) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && (status.st_mode & S_IFMT) == type;
}

bool mayAccess(const fs::path& path, int mode) {
  return ::faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
}

}  // namespace

bool SystemFolderProbe::exists(const fs::path& path) const {
  return mayAccess(path, F_OK);
}

bool SystemFolderProbe::isDirectory(const fs::path& path) const {
  return hasType(path, S_IFDIR);
}

bool SystemFolderProbe::isReadable(const fs::path& path) const {
  return mayAccess(path, isDirectory(path) ? R_OK | X_OK : R_OK);
}

// Access first: most of the files asked for are not there.
bool SystemFolderProbe::isExecutableFile(const fs::path& path) const {
  return mayAccess(path, X_OK) && hasType(path, S_IFREG);
}

std::optional<fs::path> SystemFolderProbe::canonical(const fs::path& path) const {
  std::error_code error;
  fs::path result = fs::canonical(path, error);
  if (error) return std::nullopt;
  return result;
}

}  // namespace quillmeter
