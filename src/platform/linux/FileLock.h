#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <utility>

#include <tl/expected.hpp>

#include "base/FileDescriptor.h"

namespace quillmeter {

// A lock between programs that write the same file, held on a file of its own beside it (the file itself is replaced at
// each write, so it cannot carry the lock). The lock file stays; a program that dies lets go of it. Who waits gets his
// turn, also when the others write without a pause. One thread at a time.
class FileLock {
 public:
  // Held until it is released. It holds nothing on a file system that knows no locks: two programs that write at once
  // may lose a change there, but no settings at all would be worse.
  class Hold {
   public:
    explicit Hold(int fd) : fd_(fd) {}
    Hold(Hold&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Hold& operator=(Hold&&) = delete;
    ~Hold();

   private:
    int fd_;
  };

  explicit FileLock(std::filesystem::path lockFile) : path_(std::move(lockFile)) {}

  // Makes the folder (0700) and the lock file (0600) where they are missing. The errno, ETIMEDOUT when others held it
  // for the whole of `patience`.
  tl::expected<Hold, int> acquire(std::chrono::milliseconds patience);

 private:
  int open();
  bool isCurrent() const;

  const std::filesystem::path path_;
  FileDescriptor file_;
  dev_t device_ = 0;  // of file_
  ino_t number_ = 0;
};

}  // namespace quillmeter
