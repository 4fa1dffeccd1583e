#pragma once

#include <filesystem>
#include <span>
#include <string_view>

#include "base/FileDescriptor.h"

namespace quillmeter {

// A small file of /proc or /sys that is read again and again: it stays open and is read from its start each time, one
// system call a reading. Opened anew when the kernel says that what it stood for is gone, and when another file took
// its place (a file system mounted over it), which is looked for at every sixteenth reading.
class KeptFile {
 public:
  explicit KeptFile(std::filesystem::path path) : path_(std::move(path)) {}

  // The first buffer.size() bytes of the file, or all of it; empty when it cannot be read. Valid as long as the buffer.
  std::string_view read(std::span<char> buffer);
  const std::filesystem::path& path() const { return path_; }

 private:
  bool open();
  bool isReplaced() const;

  std::filesystem::path path_;
  FileDescriptor file_;
  unsigned readings_ = 0;
};

}  // namespace quillmeter
