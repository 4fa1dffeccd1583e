#pragma once

#include <filesystem>

#include <tl/expected.hpp>

#include "base/FileDescriptor.h"

namespace quillmeter {

// Opens foreign files for reading. An interface, so that tests count what is opened and make it fail.
class FileOpener {
 public:
  virtual ~FileOpener() = default;
  // A readable descriptor on a regular file, or the errno. Never blocks on a FIFO or device and never follows a link in
  // the last component: what is no regular file is refused (EINVAL; ELOOP for a link).
  virtual tl::expected<FileDescriptor, int> open(const std::filesystem::path& path) = 0;
};

class SystemFileOpener final : public FileOpener {
 public:
  tl::expected<FileDescriptor, int> open(const std::filesystem::path& path) override;
};

}  // namespace quillmeter
