#include "base/DirectoryWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <utility>

#include "base/FileDescriptor.h"

namespace quillmeter {

namespace {

constexpr int maximumDepth = 64;  // also bounds the open descriptors: one for each level

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

Date modificationDate(const struct stat& status) {
  const Date whole = Date::fromWholeSeconds(status.st_mtim.tv_sec);
  return std::min(Date{whole.microseconds + status.st_mtim.tv_nsec / 1000}, Date::distantFuture());
}

class Walk {
 public:
  Walk(const WalkOptions& options, const std::function<bool(std::string_view)>& wanted,
       const std::function<void(const WalkedFile&)>& visit)
      : options_(options), wanted_(wanted), visit_(visit) {}

  WalkOutcome run(const std::filesystem::path& root) {
    path_ = root.native();
    if (Directory directory = openDirectory(AT_FDCWD, path_.c_str(), 0)) {
      if (path_.back() == '/') path_.pop_back();
      outcome_.rootListed = list(directory.get(), 0);
      if (!outcome_.rootListed) noteUnlisted(errno);
    } else if (!meansVanished(errno)) {
      noteUnlisted(errno);
    }
    return std::move(outcome_);
  }

 private:
  static Directory openDirectory(int parent, const char* name, int extraFlags) {
    FileDescriptor file;
    do {
      file.reset(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | extraFlags));
    } while (!file && errno == EINTR);
    if (!file) return nullptr;
    Directory directory(fdopendir(file.get()));
    if (directory) file.release();
    return directory;
  }

  // False when the listing broke off.
  bool list(DIR* directory, int depth) {
    const std::size_t folderLength = path_.size();
    for (;;) {
      errno = 0;
      const dirent* entry = readdir(directory);
      if (entry == nullptr) return errno == 0;
      const std::string_view name = entry->d_name;
      if (name == "." || name == ".." || (options_.skipHidden && name.starts_with('.'))) continue;
      path_.append("/").append(name);
      examine(dirfd(directory), entry->d_type, path_.c_str() + folderLength + 1, depth);
      path_.resize(folderLength);
    }
  }

  void examine(int parent, unsigned char type, const char* name, int depth) {
    struct stat status {};
    bool haveStatus = false;
    if (type == DT_UNKNOWN) {  // some file systems do not tell
      if (::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
      haveStatus = true;
      type = S_ISDIR(status.st_mode) ? DT_DIR : S_ISREG(status.st_mode) ? DT_REG : DT_LNK;
    }
    if (type == DT_DIR) return descend(parent, name, depth + 1);
    if (type != DT_REG || !wanted_(name)) return;
    if (!haveStatus && ::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
    if (!S_ISREG(status.st_mode)) return;  // replaced meanwhile
    const std::filesystem::path file(path_);
    visit_(WalkedFile{file, modificationDate(status), static_cast<std::int64_t>(status.st_size)});
  }

  void descend(int parent, const char* name, int depth) {
    if (depth > maximumDepth) return noteUnlisted(ENAMETOOLONG);
    const Directory directory = openDirectory(parent, name, O_NOFOLLOW);
    if (!directory) {
      if (!meansVanished(errno)) noteUnlisted(errno);
      return;
    }
    if (!list(directory.get(), depth)) noteUnlisted(errno);
  }

  static bool meansVanished(int error) { return error == ENOENT || error == ENOTDIR || error == ELOOP; }

  void noteUnlisted(int error) {
    ++outcome_.unlistedFolders;
    if (outcome_.named.size() < WalkOutcome::maximumNamed) outcome_.named.push_back({path_, error});
  }

  const WalkOptions& options_;
  const std::function<bool(std::string_view)>& wanted_;
  const std::function<void(const WalkedFile&)>& visit_;
  WalkOutcome outcome_;
  std::string path_;  // of the entry at hand; one string for the whole walk
};

}  // namespace

WalkOutcome walkDirectory(const std::filesystem::path& root, const WalkOptions& options,
                          const std::function<bool(std::string_view name)>& wanted,
                          const std::function<void(const WalkedFile&)>& visit) {
  return Walk(options, wanted, visit).run(root);
}

}  // namespace quillmeter
