#include "base/FileOpener.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;

void makeSocket(const fs::path& path) {
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

TEST(FileOpener, opensRegularFilesOnly) {
  const test::TemporaryDirectory folder;
  const fs::path root = folder.path();
  folder.write("file", "text");
  fs::create_directory(root / "folder.jsonl");
  fs::create_symlink("file", root / "link");
  fs::create_symlink("loop", root / "loop");
  fs::create_directory_symlink(".", root / "same");
  ASSERT_EQ(::mkfifo((root / "fifo").c_str(), 0600), 0);
  makeSocket(root / "socket");

  SystemFileOpener opener;
  const std::pair<fs::path, int> refused[] = {
      {root / "folder.jsonl", EINVAL}, {root / "link", ELOOP},
      {root / "loop", ELOOP},          {root / "fifo", EINVAL},
      {root / "socket", EINVAL},       {root / "missing", ENOENT},
      {"/dev/zero", EINVAL},           {"", ENOENT},
      {root / "file" / "x", ENOTDIR},  {std::string(5000, 'x'), ENAMETOOLONG},
  };
  for (const auto& [path, error] : refused) {
    const auto file = opener.open(path);
    ASSERT_FALSE(file) << path;
    EXPECT_EQ(file.error(), error) << path;
  }
  const auto file = opener.open(root / "same" / "file");  // links above the file are the user's business
  ASSERT_TRUE(file);
  char text[8] = {};
  EXPECT_EQ(::read(file->get(), text, sizeof text), 4);
  EXPECT_TRUE(::fcntl(file->get(), F_GETFD) & FD_CLOEXEC);
}

TEST(FileDescriptor, closesWhatItOwnsExactlyOnce) {
  const auto isOpen = [](int fd) { return ::fcntl(fd, F_GETFD) >= 0; };
  FileDescriptor a(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  const int first = a.get();
  FileDescriptor b(std::move(a));
  FileDescriptor c(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  const int second = c.get();
  c = std::move(b);
  EXPECT_TRUE(isOpen(first));
  EXPECT_FALSE(isOpen(second));
  const int released = c.release();
  c.reset();
  EXPECT_TRUE(isOpen(released));
  c.reset(released);
  c.reset();
  EXPECT_FALSE(isOpen(released));
}

}  // namespace
}  // namespace quillmeter
