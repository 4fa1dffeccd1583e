#include "base/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

#include "base/FileDescriptor.h"
#include "base/StaleTemporaries.h"

namespace quillmeter {

namespace {

namespace fs = std::filesystem;

// 0 or the errno. `call` is repeated while a signal interrupts it.
template <typename Call>
int errorOf(Call call) {
  for (;;) {
    if (call() >= 0) return 0;
    if (errno != EINTR) return errno;
  }
}

// Where the chain of links at `path` ends, whether something is there or not.
tl::expected<fs::path, int> linkTarget(fs::path path) {
  constexpr int maximumLinks = 40;  // the kernel's bound
  for (int i = 0; i < maximumLinks; ++i) {
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    if (error) {
      // EINVAL: no link. ENOENT: nothing there yet. What else is wrong shows when the file is made.
      return path;
    }
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return tl::unexpected(ELOOP);
}

// Removes the temporary file unless it was renamed.
struct TemporaryName {
  std::string path;
  bool armed = true;
  ~TemporaryName() {
    if (armed) ::unlink(path.c_str());
  }
};

constexpr mode_t temporaryFileMode = 0600;  // as mkostemp makes it
constexpr std::string_view temporaryPrefix = ".quillmeter-write-";

int fillTemporary(FileDescriptor& file, std::string_view bytes, const AtomicWriteOptions& options, bool keepOpen) {
  if (options.fileMode != temporaryFileMode && ::fchmod(file.get(), options.fileMode) != 0) return errno;
  if (const int error = writeAll(file.get(), bytes); error != 0) return error;
  if (options.synchronize) {
    if (const int error = errorOf([&] { return ::fsync(file.get()); }); error != 0) return error;
  }
  // A network file system may tell of a full disk only now.
  if (!keepOpen && ::close(file.release()) != 0 && errno != EINTR) return errno;
  return 0;
}

// Gives the new file when it is to be kept open.
tl::expected<FileDescriptor, int> replaceFile(const fs::path& path, std::string_view bytes,
                                              const AtomicWriteOptions& options, bool keepOpen) {
  const auto target = linkTarget(path);
  if (!target) return tl::unexpected(target.error());
  const fs::path folder = target->has_parent_path() ? target->parent_path() : fs::path(".");
  if (options.createFolders) {
    if (const int error = makeFolders(folder, options.folderMode); error != 0) return tl::unexpected(error);
  }
  // Opened first: what cannot be synchronised is found before anything was written.
  FileDescriptor folderFile;
  if (options.synchronize) {
    folderFile.reset(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folderFile) return tl::unexpected(errno);
  }

  // Files in memory are gone with the session anyway.
  if (options.synchronize) {
    for (const fs::path& left : staleTemporaries(folder, temporaryPrefix)) ::unlink(left.c_str());
  }
  // A short name of its own, because the target's may already have the longest length that a file system takes.
  TemporaryName temporary{(folder / std::string(temporaryPrefix).append("XXXXXX")).string()};
  FileDescriptor file(::mkostemp(temporary.path.data(), O_CLOEXEC));
  if (!file) {
    temporary.armed = false;
    return tl::unexpected(errno);
  }
  if (const int error = fillTemporary(file, bytes, options, keepOpen); error != 0) return tl::unexpected(error);
  if (::rename(temporary.path.c_str(), target->c_str()) != 0) return tl::unexpected(errno);
  temporary.armed = false;
  // The new file is in place for everybody; that a crash could still undo it is no reason to report that it is not.
  if (options.synchronize) errorOf([&] { return ::fsync(folderFile.get()); });
  return file;
}

}  // namespace

int makeFolders(const fs::path& folder, mode_t mode) {
  if (folder.empty() || ::mkdir(folder.c_str(), mode) == 0 || errno == EEXIST) return 0;
  if (errno != ENOENT) return errno;
  if (!folder.has_relative_path()) return ENOENT;
  if (const int error = makeFolders(folder.parent_path(), mode); error != 0) return error;
  return ::mkdir(folder.c_str(), mode) == 0 || errno == EEXIST ? 0 : errno;
}

tl::expected<void, int> writeFileAtomically(const fs::path& path, std::string_view bytes,
                                            const AtomicWriteOptions& options) {
  const auto replaced = replaceFile(path, bytes, options, false);
  if (!replaced) return tl::unexpected(replaced.error());
  return {};
}

tl::expected<FileDescriptor, int> replaceFileAtomically(const fs::path& path, std::string_view bytes,
                                                        const AtomicWriteOptions& options) {
  return replaceFile(path, bytes, options, true);
}

}  // namespace quillmeter
