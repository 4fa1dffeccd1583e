#pragma once

#include "platform/FolderProbe.h"

namespace quillmeter {

// Asks the file system.
class SystemFolderProbe final : public FolderProbe {
 public:
  bool exists(const std::filesystem::path& path) const override;
  bool isDirectory(const std::filesystem::path& path) const override;
  bool isReadable(const std::filesystem::path& path) const override;
  bool isExecutableFile(const std::filesystem::path& path) const override;
  std::optional<std::filesystem::path> canonical(const std::filesystem::path& path) const override;
};

}  // namespace quillmeter
