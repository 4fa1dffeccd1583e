#include "base/StaleTemporaries.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <memory>

namespace quillmeter {

namespace {

constexpr std::size_t randomCharacters = 6;  // of mkstemp and mkdtemp
constexpr int maximumEntries = 4096;
constexpr std::time_t staleSeconds = 3600;

bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isTemporaryName(std::string_view name, std::string_view prefix) {
  return name.size() == prefix.size() + randomCharacters && name.starts_with(prefix) &&
         std::ranges::all_of(name.substr(prefix.size()), isLetterOrDigit);
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

}  // namespace

std::vector<std::filesystem::path> staleTemporaries(const std::filesystem::path& folder, std::string_view prefix) {
  std::vector<std::filesystem::path> found;
  const std::unique_ptr<DIR, CloseFolder> entries(::opendir(folder.c_str()));
  if (!entries) return found;
  const std::time_t now = std::time(nullptr);
  for (int seen = 0; seen < maximumEntries; ++seen) {
    const dirent* const entry = ::readdir(entries.get());
    if (entry == nullptr) break;
    if (!isTemporaryName(entry->d_name, prefix)) continue;
    struct stat status {};
    if (::fstatat(::dirfd(entries.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
    if (status.st_uid != ::geteuid() || now - status.st_mtim.tv_sec < staleSeconds) continue;
    if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) found.push_back(folder / entry->d_name);
  }
  return found;
}

}  // namespace quillmeter
