#include "base/AtomicFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <string>

#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

std::size_t entriesIn(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

int errorOfWriting(const fs::path& path, std::string_view bytes, const AtomicWriteOptions& options = {}) {
  const auto result = writeFileAtomically(path, bytes, options);
  return result ? 0 : result.error();
}

TEST(AtomicFile, replacesAFileAsAWhole) {
  const test::TemporaryDirectory folder;
  const fs::path path = folder.write("file", std::string(100'000, 'o'));
  fs::permissions(path, fs::perms(0644));
  const int before = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  for (const std::string& bytes : {std::string("new"), std::string(), std::string(3'000'000, 'n') + '\0' + "n"}) {
    for (const bool synchronize : {true, false}) {
      ASSERT_EQ(errorOfWriting(path, bytes, {.synchronize = synchronize}), 0);
      EXPECT_TRUE(test::readFile(path) == bytes);
    }
  }
  EXPECT_EQ(modeOf(path), 0600U);
  ASSERT_EQ(errorOfWriting(path, "x", {.fileMode = 0640}), 0);
  EXPECT_EQ(modeOf(path), 0640U);
  EXPECT_EQ(entriesIn(folder.path()), 1U);
  char byte = 0;
  EXPECT_EQ(::pread(before, &byte, 1, 99'999), 1) << "who reads the old file reads all of it";
  EXPECT_EQ(byte, 'o');
  ::close(before);
}

TEST(AtomicFile, makesMissingFoldersWhenAskedTo) {
  const test::TemporaryDirectory folder;
  const fs::path path = folder.path() / "a" / "b" / "file";
  EXPECT_EQ(errorOfWriting(path, "x", {.createFolders = false}), ENOENT);
  EXPECT_FALSE(fs::exists(folder.path() / "a"));
  EXPECT_EQ(errorOfWriting(path, "x", {.folderMode = 0750}), 0);
  EXPECT_EQ(test::readFile(path), "x");
  EXPECT_EQ(modeOf(folder.path() / "a"), 0750U);
  EXPECT_EQ(modeOf(folder.path() / "a" / "b"), 0750U);
}

TEST(AtomicFile, aLinkStaysALink) {
  const test::TemporaryDirectory folder;
  const fs::path root = folder.path();
  folder.write("dotfiles/real", "old");
  fs::create_symlink("dotfiles/real", root / "relative");
  fs::create_symlink(root / "relative", root / "chain");
  fs::create_symlink("dotfiles/new", root / "dangling");
  fs::create_symlink("later/new", root / "without-folder");
  fs::create_symlink("loop", root / "loop");
  fs::create_directory_symlink("dotfiles", root / "folder");

  ASSERT_EQ(errorOfWriting(root / "chain", "new"), 0);
  EXPECT_EQ(test::readFile(root / "dotfiles/real"), "new");
  ASSERT_EQ(errorOfWriting(root / "dangling", "made"), 0);
  EXPECT_EQ(test::readFile(root / "dotfiles/new"), "made");
  ASSERT_EQ(errorOfWriting(root / "without-folder", "made"), 0);
  EXPECT_EQ(test::readFile(root / "later/new"), "made");
  ASSERT_EQ(errorOfWriting(root / "folder" / "real", "again"), 0);
  EXPECT_EQ(test::readFile(root / "dotfiles/real"), "again");
  EXPECT_EQ(errorOfWriting(root / "loop", "x"), ELOOP);
  for (const char* link : {"relative", "chain", "dangling", "without-folder", "loop", "folder"})
    EXPECT_TRUE(fs::is_symlink(root / link)) << link;
}

TEST(AtomicFile, aFileWithTheLongestNameIsWrittenToo) {
  const test::TemporaryDirectory folder;
  const fs::path path = folder.path() / std::string(255, 'n');
  EXPECT_EQ(errorOfWriting(path, "x"), 0);
  EXPECT_EQ(test::readFile(path), "x");
}

TEST(AtomicFile, whatKilledProcessesLeftIsRemovedOnceItIsOld) {
  const test::TemporaryDirectory folder;
  const auto old = fs::file_time_type::clock::now() - std::chrono::hours(2);
  const auto write = [&](const std::string& name, bool isOld) {
    const fs::path path = folder.write(name, "x");
    if (isOld) fs::last_write_time(path, old);
    return path;
  };
  const fs::path left = write(".quillmeter-write-aB3dE6", true);
  const fs::path kept[] = {
      write(".quillmeter-write-fresh1", false), write(".quillmeter-write-notes.txt", true),
      write(".quillmeter-write-no-tmp", true),  write(".quillmeter-backup", true),
      write("quillmeter-write-aB3dE6", true),   write(".quillmeter-write-folder/file", true),
  };
  fs::last_write_time(folder.path() / ".quillmeter-write-folder", old);
  fs::create_symlink(kept[3], folder.path() / ".quillmeter-write-aLink1");

  ASSERT_EQ(errorOfWriting(folder.path() / "file", "x", {.synchronize = false}), 0);
  EXPECT_TRUE(fs::exists(left)) << "a file in memory is not worth the look";
  ASSERT_EQ(errorOfWriting(folder.path() / "file", "x"), 0);
  EXPECT_FALSE(fs::exists(left));
  for (const fs::path& path : kept) EXPECT_TRUE(fs::exists(path)) << path;
  EXPECT_TRUE(fs::is_symlink(folder.path() / ".quillmeter-write-aLink1"));
}

TEST(AtomicFile, whatCannotBeWrittenLeavesNothingBehind) {
  const test::TemporaryDirectory folder;
  const fs::path root = folder.path();
  folder.write("file", "old");
  folder.write("full/file", "x");
  const std::pair<fs::path, int> table[] = {
      {root / "file" / "below-a-file", ENOTDIR},    {root / "file" / "a" / "b", ENOTDIR}, {root / "full", EISDIR},
      {root / std::string(256, 'n'), ENAMETOOLONG}, {"/proc/nothing/file", ENOENT},       {"", ENOENT},
  };
  for (const auto& [path, error] : table) EXPECT_EQ(errorOfWriting(path, "new"), error) << path;
  EXPECT_EQ(test::readFile(root / "file"), "old");
  EXPECT_EQ(entriesIn(root), 2U);
  EXPECT_EQ(entriesIn(root / "full"), 1U);
}

// Runs `body` in a process of its own, whose limits end with it; its result is the exit code.
int inChild(const std::function<int()>& body) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(body());
  int status = 0;
  if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

TEST(AtomicFile, aDiskThatFillsUpKeepsTheOldFile) {
  const test::TemporaryDirectory folder;
  const fs::path path = folder.write("file", "old");
  const int error = inChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return errorOfWriting(path, std::string(10'000, 'n'));
  });
  EXPECT_EQ(error, EFBIG);
  EXPECT_EQ(test::readFile(path), "old");
  EXPECT_EQ(entriesIn(folder.path()), 1U);
}

TEST(AtomicFile, withoutDescriptorsNothingChanges) {
  const test::TemporaryDirectory folder;
  const fs::path path = folder.write("file", "old");
  for (const rlim_t spare : {0, 1}) {  // none for the folder, or none for the temporary file
    const int error = inChild([&] {
      const int next = ::dup(0);
      ::close(next);
      const rlimit limit{static_cast<rlim_t>(next) + spare, static_cast<rlim_t>(next) + spare};
      ::setrlimit(RLIMIT_NOFILE, &limit);
      return errorOfWriting(path, "new");
    });
    EXPECT_EQ(error, EMFILE) << spare;
  }
  EXPECT_EQ(test::readFile(path), "old");
  EXPECT_EQ(entriesIn(folder.path()), 1U);
}

// Interrupting signals arrive all the time while a big file is written.
TEST(AtomicFile, signalsDoNotCutAFileShort) {
  const test::TemporaryDirectory folder;
  const fs::path path = folder.path() / "file";
  const std::string bytes(8'000'000, 'n');
  const int error = inChild([&] {
    struct sigaction action {};
    action.sa_handler = [](int) {};  // without SA_RESTART
    ::sigaction(SIGALRM, &action, nullptr);
    const itimerval often{{0, 200}, {0, 200}};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    return errorOfWriting(path, bytes);
  });
  EXPECT_EQ(error, 0);
  EXPECT_TRUE(test::readFile(path) == bytes);
}

}  // namespace
}  // namespace quillmeter
