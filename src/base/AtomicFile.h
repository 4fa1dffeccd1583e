#pragma once

#include <filesystem>
#include <string_view>

#include <sys/types.h>
#include <tl/expected.hpp>

#include "base/FileDescriptor.h"

namespace quillmeter {

struct AtomicWriteOptions {
  mode_t fileMode = 0600;
  mode_t folderMode = 0700;  // of folders that have to be made
  bool createFolders = true;
  bool synchronize = true;  // fsync of file and folder; off for files in memory
};

// Replaces the file at `path` by `bytes`: a temporary file beside it, write, fsync, rename, fsync of the folder. After
// any failure the old file is as it was and the temporary one is gone; the error is the errno. A link at `path` is
// followed, so that a linked file stays a link. A synchronised write also removes the temporary files that processes
// killed while they wrote left in the folder more than an hour ago.
[[nodiscard]] tl::expected<void, int> writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                                                          const AtomicWriteOptions& options = {});

// The same, and gives the new file, still open: for who wants to know later whether it is still the one at `path`.
[[nodiscard]] tl::expected<FileDescriptor, int> replaceFileAtomically(const std::filesystem::path& path,
                                                                      std::string_view bytes,
                                                                      const AtomicWriteOptions& options = {});

// Makes the folders that are missing on the way to `folder`, and itself. 0 or the errno.
int makeFolders(const std::filesystem::path& folder, mode_t mode);

}  // namespace quillmeter
