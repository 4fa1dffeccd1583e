#include "screentime/ActivityArchiveFile.h"

#include <chrono>
#include <csignal>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

namespace quillmeter::test {
namespace {

mode_t modeOf(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

std::vector<ActivitySpan> spansOf(int count, const std::string& id = "editor") {
  std::vector<ActivitySpan> spans;
  for (int index = 0; index < count; ++index) {
    spans.push_back({Date{index * 2'000'000LL}, Date{index * 2'000'000LL + 1'000'000}, {id, "Name of " + id}});
  }
  return spans;
}

// Runs `body` in a process of its own, whose rights and limits it may give up; gives its exit code (255: it crashed).
int inOtherProcess(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

struct ArchiveFolder {
  TemporaryDirectory directory;
  std::filesystem::path folder = directory.path() / "Quillmeter" / "ScreenTime";
  std::filesystem::path path = folder / "activity.json";
};

TEST(ActivityArchiveFile, aMissingFileIsAnEmptyRecordAndNothingIsMade) {
  ArchiveFolder place;
  ActivityArchiveFile file(place.path);
  const auto loaded = file.load();
  ASSERT_TRUE(loaded);
  EXPECT_FALSE(*loaded);
  EXPECT_TRUE(file.isAsLeft());
  EXPECT_EQ(file.remove(), ArchiveOutcome::done);
  EXPECT_FALSE(std::filesystem::exists(place.directory.path() / "Quillmeter"));
}

TEST(ActivityArchiveFile, savingMakesFoldersAndFilesForTheUserAlone) {
  ArchiveFolder place;
  const mode_t mask = umask(0);
  ActivityArchiveFile file(place.path);
  ASSERT_EQ(file.claim(), ArchiveOutcome::done);
  const auto spans = spansOf(3);
  EXPECT_EQ(file.save({Date{0}, true, spans}), ArchiveOutcome::done);
  umask(mask);
  EXPECT_EQ(modeOf(place.path), 0600U);
  EXPECT_EQ(modeOf(place.folder), 0700U);
  EXPECT_EQ(modeOf(place.folder.parent_path()), 0700U);
  EXPECT_EQ(modeOf(place.folder / "activity.json.lock"), 0600U);
  EXPECT_EQ(ActivityArchiveFile(place.path).load().value(), (ActivityArchive{1, Date{0}, true, spans}));
}

TEST(ActivityArchiveFile, whatCannotBeReadStaysByteForByte) {
  for (const std::string& bytes : {std::string(R"({"version":2,"enabled":true,"spans":[]})"),
                                   std::string("{\"version\":1"), std::string(), std::string(100, '\0')}) {
    ArchiveFolder place;
    place.directory.write("Quillmeter/ScreenTime/activity.json", bytes);
    ActivityArchiveFile file(place.path);
    EXPECT_FALSE(file.load()) << bytes;
    EXPECT_EQ(readFile(place.path), bytes);
  }
}

TEST(ActivityArchiveFile, whatIsNoFileIsRefusedWithoutWaiting) {
  ArchiveFolder place;
  std::filesystem::create_directories(place.folder);
  ASSERT_EQ(mkfifo(place.path.c_str(), 0600), 0);
  EXPECT_FALSE(ActivityArchiveFile(place.path).load());
  std::filesystem::remove(place.path);
  std::filesystem::create_directory(place.path);
  EXPECT_FALSE(ActivityArchiveFile(place.path).load());
  EXPECT_EQ(ActivityArchiveFile(place.path).remove(), ArchiveOutcome::failed);
}

TEST(ActivityArchiveFile, anArchiveAboveTheBoundIsNotRead) {
  ArchiveFolder place;
  place.directory.write("Quillmeter/ScreenTime/activity.json", "{");
  std::filesystem::resize_file(place.path, ActivityArchive::maximumBytes + 1);
  EXPECT_FALSE(ActivityArchiveFile(place.path).load());
}

TEST(ActivityArchiveFile, onlyOneProcessWrites) {
  ArchiveFolder place;
  ActivityArchiveFile first(place.path);
  ASSERT_EQ(first.claim(), ArchiveOutcome::done);
  ASSERT_EQ(first.save({Date{0}, true, {}}), ArchiveOutcome::done);
  const std::string before = readFile(place.path);

  ActivityArchiveFile second(place.path);
  EXPECT_EQ(second.claim(), ArchiveOutcome::heldByOther);
  EXPECT_FALSE(second.isClaimed());
  EXPECT_NE(second.save({Date{0}, false, {}}), ArchiveOutcome::done);
  EXPECT_EQ(second.remove(), ArchiveOutcome::heldByOther);
  EXPECT_TRUE(second.load()) << "reading needs no right";
  EXPECT_EQ(readFile(place.path), before);
}

TEST(ActivityArchiveFile, theRightToWriteEndsWithItsProcessHoweverItEnds) {
  ArchiveFolder place;
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    ActivityArchiveFile file(place.path);
    const char claimed = file.claim() == ArchiveOutcome::done ? 'y' : 'n';
    if (write(ready[1], &claimed, 1) == 1) pause();
    _exit(1);
  }
  char claimed = 0;
  ASSERT_EQ(read(ready[0], &claimed, 1), 1);
  ASSERT_EQ(claimed, 'y');
  ActivityArchiveFile file(place.path);
  EXPECT_EQ(file.claim(), ArchiveOutcome::heldByOther);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(file.claim(), ArchiveOutcome::done);
  close(ready[0]);
  close(ready[1]);
}

TEST(ActivityArchiveFile, aFolderThatVanishesIsMadeAgainAndItsLockIsTakenAnew) {
  ArchiveFolder place;
  ActivityArchiveFile file(place.path);
  ASSERT_EQ(file.claim(), ArchiveOutcome::done);
  ASSERT_EQ(file.save({Date{0}, true, {}}), ArchiveOutcome::done);
  EXPECT_TRUE(file.isAsLeft());
  std::filesystem::remove_all(place.folder);
  EXPECT_FALSE(file.isAsLeft());
  EXPECT_EQ(file.save({Date{0}, true, {}}), ArchiveOutcome::done);
  EXPECT_TRUE(file.isAsLeft());
  EXPECT_EQ(ActivityArchiveFile(place.path).claim(), ArchiveOutcome::heldByOther);

  std::filesystem::remove_all(place.folder);
  ActivityArchiveFile other(place.path);
  ASSERT_EQ(other.claim(), ArchiveOutcome::done);
  EXPECT_EQ(file.save({Date{0}, true, {}}), ArchiveOutcome::heldByOther);
  EXPECT_FALSE(file.isClaimed());
}

TEST(ActivityArchiveFile, aReadOnlyFolderFailsAndKeepsTheOldFile) {
  ArchiveFolder place;
  const auto spans = spansOf(2);
  {
    ActivityArchiveFile file(place.path);
    ASSERT_EQ(file.claim(), ArchiveOutcome::done);
    ASSERT_EQ(file.save({Date{0}, true, spans}), ArchiveOutcome::done);
  }
  const std::string before = readFile(place.path);
  std::filesystem::permissions(place.directory.path(), std::filesystem::perms{0755});
  std::filesystem::permissions(place.folder.parent_path(), std::filesystem::perms{0755});
  std::filesystem::permissions(place.path, std::filesystem::perms{0666});
  std::filesystem::permissions(place.folder / "activity.json.lock", std::filesystem::perms{0666});
  std::filesystem::permissions(place.folder, std::filesystem::perms{0555});
  const int code = inOtherProcess([&] {
    if (geteuid() == 0 && seteuid(65534) != 0) return 10;
    ActivityArchiveFile file(place.path);
    if (!file.load()) return 11;
    if (file.claim() != ArchiveOutcome::done) return 12;
    if (file.save({Date{0}, true, {}}) != ArchiveOutcome::failed) return 13;
    return file.remove() == ArchiveOutcome::failed && file.isAsLeft() ? 0 : 14;
  });
  std::filesystem::permissions(place.folder, std::filesystem::perms{0700});
  EXPECT_EQ(code, 0);
  EXPECT_EQ(readFile(place.path), before);
}

TEST(ActivityArchiveFile, aFileInPlaceOfTheFolderIsAFailure) {
  TemporaryDirectory directory;
  directory.write("Quillmeter", "not a folder");
  ActivityArchiveFile file(directory.path() / "Quillmeter" / "ScreenTime" / "activity.json");
  EXPECT_EQ(file.claim(), ArchiveOutcome::failed);
  EXPECT_EQ(file.save({Date{0}, true, {}}), ArchiveOutcome::failed);
  EXPECT_EQ(readFile(directory.path() / "Quillmeter"), "not a folder");
}

// The kernel stops the write in the middle, as a full disk does.
TEST(ActivityArchiveFile, aWriteThatEndsHalfwayKeepsTheOldFileAndLeavesNothingBehind) {
  ArchiveFolder place;
  {
    ActivityArchiveFile file(place.path);
    ASSERT_EQ(file.claim(), ArchiveOutcome::done);
    ASSERT_EQ(file.save({Date{0}, true, spansOf(2)}), ArchiveOutcome::done);
  }
  const std::string before = readFile(place.path);
  const int code = inOtherProcess([&] {
    ActivityArchiveFile file(place.path);
    if (!file.load() || file.claim() != ArchiveOutcome::done) return 10;
    const rlimit limit{16'384, 16'384};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0 || std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR) return 11;
    const auto spans = spansOf(5'000);
    return file.save({Date{0}, true, spans}) == ArchiveOutcome::failed && file.isAsLeft() ? 0 : 12;
  });
  EXPECT_EQ(code, 0);
  EXPECT_EQ(readFile(place.path), before);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(place.folder), {}), 2) << "the file and its lock";
}

TEST(ActivityArchiveFile, aFullDiskKeepsTheOldFile) {
  ArchiveFolder place;
  std::filesystem::create_directories(place.folder);
  if (mount("none", place.folder.c_str(), "tmpfs", 0, "size=64k,mode=700") != 0)
    GTEST_SKIP() << "may not mount a small file system here";
  std::string before;
  bool unchanged = false;
  {
    ActivityArchiveFile file(place.path);
    EXPECT_EQ(file.claim(), ArchiveOutcome::done);
    EXPECT_EQ(file.save({Date{0}, true, spansOf(2)}), ArchiveOutcome::done);
    before = readFile(place.path);
    EXPECT_EQ(file.save({Date{0}, true, spansOf(5'000)}), ArchiveOutcome::failed);
    unchanged = readFile(place.path) == before && file.isAsLeft();
    EXPECT_EQ(file.save({Date{0}, false, spansOf(2)}), ArchiveOutcome::done) << "the space is free again";
  }
  umount2(place.folder.c_str(), MNT_DETACH);
  EXPECT_TRUE(unchanged);
}

TEST(ActivityArchiveFile, killedWhileSavingItIsAlwaysTheOldOrTheNewFile) {
  ArchiveFolder place;
  const auto small = spansOf(10, "old");
  const auto big = spansOf(1'500, "new");
  const std::string smallBytes = *ActivityArchiveView{Date{0}, true, small}.encode();
  const std::string bigBytes = *ActivityArchiveView{Date{0}, true, big}.encode();
  std::mt19937 random(3);
  int landedIn[2] = {0, 0};
  for (int round = 0; round < 300; ++round) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
      ActivityArchiveFile file(place.path);
      if (file.claim() != ArchiveOutcome::done || file.save({Date{0}, true, small}) != ArchiveOutcome::done) _exit(1);
      const char go = 'g';
      if (write(ready[1], &go, 1) != 1) _exit(1);
      for (;;) {
        if (file.save({Date{0}, true, big}) != ArchiveOutcome::done ||
            file.save({Date{0}, true, small}) != ArchiveOutcome::done)
          _exit(1);
      }
    }
    close(ready[1]);
    char go = 0;
    ASSERT_EQ(read(ready[0], &go, 1), 1);
    close(ready[0]);
    // Spins for a random part of a save, so that the end comes at any point of it.
    const timespec pause{0, static_cast<long>(random() % 3'000'000)};
    nanosleep(&pause, nullptr);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";
    const std::string bytes = readFile(place.path);
    ASSERT_TRUE(bytes == smallBytes || bytes == bigBytes) << "round " << round;
    ++landedIn[bytes == bigBytes ? 1 : 0];
    ASSERT_TRUE(ActivityArchiveFile(place.path).load());
  }
  ActivityArchiveFile file(place.path);
  EXPECT_EQ(file.claim(), ArchiveOutcome::done);
  for (const auto& entry : std::filesystem::directory_iterator(place.folder)) {
    std::filesystem::last_write_time(entry, std::filesystem::file_time_type::clock::now() - std::chrono::hours(2));
  }
  EXPECT_EQ(file.save({Date{0}, true, small}), ArchiveOutcome::done);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(place.folder), {}), 2)
      << "what broken saves left is swept away once it is old";
  EXPECT_GT(landedIn[0], 0);
  EXPECT_GT(landedIn[1], 0);
}

}  // namespace
}  // namespace quillmeter::test
