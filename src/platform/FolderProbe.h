#pragma once

#include <filesystem>
#include <optional>

namespace quillmeter {

// Facts about files and folders, asked with the rights of this process. Links are followed. What cannot be asked is
// false. Safe on every thread.
class FolderProbe {
 public:
  virtual ~FolderProbe() = default;
  virtual bool exists(const std::filesystem::path& path) const = 0;
  virtual bool isDirectory(const std::filesystem::path& path) const = 0;
  // For a folder: it can be listed and entered.
  virtual bool isReadable(const std::filesystem::path& path) const = 0;
  // A regular file that may be run.
  virtual bool isExecutableFile(const std::filesystem::path& path) const = 0;
  // `path` made absolute against the working directory, with "." and ".." and all links resolved; absent when it does
  // not exist.
  virtual std::optional<std::filesystem::path> canonical(const std::filesystem::path& path) const = 0;
};

}  // namespace quillmeter
