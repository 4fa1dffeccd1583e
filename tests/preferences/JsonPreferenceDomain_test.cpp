#include "platform/linux/JsonPreferenceDomain.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <thread>

#include "base/FileDescriptor.h"
#include "platform/linux/FileLock.h"
#include "platform/linux/JsonPreferenceDocument.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::readFile;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = PreferenceProblem::Kind;

class FixedClock final : public Clock {
 public:
  Date now() const override { return Date::fromWholeSeconds(1'795'000'000); }
};

const FixedClock fixedClock;

class JsonPreferenceDomainTest : public testing::Test {
 protected:
  JsonPreferenceDomain open(JsonPreferenceOptions options = {.synchronize = false}) const {
    return JsonPreferenceDomain("com.kesto.Quillmeter", file, fixedClock, options);
  }
  std::vector<fs::path> keptAside() const {
    std::vector<fs::path> kept;
    for (const auto& entry : fs::directory_iterator(file.parent_path())) {
      if (entry.path().filename().string().find(".unreadable-") != std::string::npos) kept.push_back(entry.path());
    }
    std::ranges::sort(kept);
    return kept;
  }

  const TemporaryDirectory scratch;
  const fs::path file = scratch.path() / "config/quillmeter/com.kesto.Quillmeter.json";
};

// Runs `body` in another process; gives what waitpid says of it.
int statusOfChild(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

mode_t modeOf(const fs::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST_F(JsonPreferenceDomainTest, aNewDomainMakesItsFolderAndFileForTheUserAlone) {
  auto domain = open({});
  EXPECT_FALSE(domain.snapshot());
  EXPECT_EQ(domain.remove("settings.appTheme"), false);
  EXPECT_FALSE(fs::exists(scratch.path() / "config")) << "removing nothing wrote something";
  EXPECT_EQ(domain.set("settings.appTheme", "dark"s), true);
  EXPECT_EQ(readFile(file), "{\n  \"settings.appTheme\": \"dark\"\n}\n");
  EXPECT_EQ(modeOf(file), 0600u);
  EXPECT_EQ(modeOf(file.parent_path()), 0700u);
  EXPECT_EQ(modeOf(file.parent_path().parent_path()), 0700u);
  EXPECT_EQ(open().snapshot(), (PreferenceSnapshot{{"settings.appTheme", "dark"s}}));
}

TEST_F(JsonPreferenceDomainTest, whatIsStoredAlreadyIsNotWrittenAgain) {
  auto domain = open();
  ASSERT_TRUE(domain.apply({{"a", 1.0}, {"b", true}}));
  const auto before = readFile(file);
  struct stat first {};
  ::stat(file.c_str(), &first);
  EXPECT_EQ(domain.apply({{"b", true}, {"a", 1.0}, {"c", std::nullopt}}), false);
  struct stat second {};
  ::stat(file.c_str(), &second);
  EXPECT_EQ(first.st_ino, second.st_ino);
  EXPECT_EQ(domain.apply({{"a", std::int64_t{1}}}), true) << "an integer is not the real number";
}

TEST_F(JsonPreferenceDomainTest, aChangeByAnotherProgramIsSeenAndMergedByKey) {
  auto ours = open();
  auto theirs = open();
  ASSERT_TRUE(ours.apply({{"mine", true}, {"both", "old"s}, {"gone", true}}));
  ASSERT_TRUE(theirs.apply({{"both", "new"s}, {"theirs", std::int64_t{7}}, {"gone", std::nullopt}}));
  EXPECT_EQ(ours.get("both"), PreferenceValue("new"s));
  EXPECT_THAT(ours.refresh(), ElementsAre("both", "gone", "theirs"));
  EXPECT_THAT(ours.refresh(), IsEmpty());

  ours.setFreshness(PreferenceFreshness::whenRefreshed);
  ASSERT_TRUE(theirs.set("both", "newer"s));
  EXPECT_EQ(ours.get("both"), PreferenceValue("new"s)) << "looked although it was asked not to";
  ASSERT_TRUE(ours.set("mine", false));
  EXPECT_THAT(ours.refresh(), ElementsAre("both"));
  EXPECT_EQ(theirs.snapshot(), (PreferenceSnapshot{{"both", "newer"s}, {"mine", false}, {"theirs", std::int64_t{7}}}));

  fs::remove(file);
  EXPECT_THAT(ours.refresh(), ElementsAre("both", "mine", "theirs"));
  EXPECT_FALSE(ours.snapshot());
}

TEST_F(JsonPreferenceDomainTest, aReplacedFileOfTheSameSizeAndTimeIsNoticed) {
  auto domain = open();
  ASSERT_TRUE(domain.set("k", "one"s));
  const auto time = fs::last_write_time(file);
  for (const char* text : {"two", "six", "ten", "six"}) {  // inode numbers are used again at once
    const auto other = scratch.write("other.json", "{\n  \"k\": \""s + text + "\"\n}\n");
    fs::last_write_time(other, time);
    fs::rename(other, file);
    EXPECT_EQ(domain.get("k"), PreferenceValue(std::string(text)));
  }
}

TEST_F(JsonPreferenceDomainTest, whatIsNotOursIsWrittenBackAsItWas) {
  fs::create_directories(file.parent_path());
  std::ofstream(file)
      << R"({"z": [1, {"x": 1.0e2}], "n":null, "big": 123456789012345678901234567890, "o": {"data": 5}})";
  auto domain = open();
  EXPECT_FALSE(domain.get("z"));
  EXPECT_TRUE(domain.contains("z"));
  EXPECT_TRUE(domain.snapshot()->contains("n"));
  ASSERT_TRUE(domain.set("a", 2.0));
  EXPECT_EQ(readFile(file),
            "{\n  \"a\": 2.0,\n  \"big\": 123456789012345678901234567890,\n  \"n\": null,\n  \"o\": {\"data\": 5},\n"
            "  \"z\": [1, {\"x\": 1.0e2}]\n}\n");
  ASSERT_TRUE(domain.apply({{"z", true}, {"n", std::nullopt}}));
  EXPECT_EQ(domain.get("z"), PreferenceValue(true));
  EXPECT_FALSE(domain.contains("n"));
}

TEST_F(JsonPreferenceDomainTest, twoProgramsWritingAtOnceLoseNothing) {
  constexpr int keysEach = 200;
  const auto writer = [&](const std::string& prefix) {
    auto domain = open();
    for (int i = 0; i < keysEach; ++i) {
      if (domain.set(prefix + std::to_string(i), std::int64_t{i}) != true) return 1;
    }
    return 0;
  };
  const pid_t first = fork();
  if (first == 0) _exit(writer("first."));
  const int second = statusOfChild([&] { return writer("second."); });
  int firstStatus = 0;
  waitpid(first, &firstStatus, 0);
  EXPECT_EQ(firstStatus, 0);
  EXPECT_EQ(second, 0);
  const auto all = open().snapshot();
  ASSERT_TRUE(all);
  EXPECT_EQ(all->size(), 2u * keysEach);
  for (const auto& entry : fs::directory_iterator(file.parent_path())) {
    EXPECT_THAT(entry.path().filename().string(), testing::StartsWith("com.kesto.Quillmeter.json")) << "left behind";
  }
}

TEST_F(JsonPreferenceDomainTest, aProgramKilledWhileWritingLeavesTheOldOrTheNewFileAndNoLock) {
  for (int round = 0; round < 12; ++round) {
    int ready[2] = {};
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
      auto domain = open();
      for (std::int64_t i = 0;; ++i) {
        // Two keys in one write: never one without the other.
        if (!domain.apply({{"left", i}, {"right", i}, {"ballast", std::string(20'000, 'x')}})) _exit(1);
        if (i >= round && ::write(ready[1], "x", 1) != 1) _exit(1);
      }
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    ::close(ready[0]);
    ::close(ready[1]);

    auto domain = open({.synchronize = false, .lockPatience = std::chrono::milliseconds(0)});
    const auto left = domain.get("left");
    ASSERT_TRUE(left);
    EXPECT_EQ(left, domain.get("right"));
    EXPECT_TRUE(domain.set("after", true)) << "the lock of a dead program is held";
    EXPECT_THAT(domain.takeProblems(), IsEmpty());
  }
}

TEST_F(JsonPreferenceDomainTest, aTornFileIsReportedLeftAloneByReadsAndKeptAsideByAWrite) {
  const std::string torn = R"({"settings.appTheme": "da)";
  fs::create_directories(file.parent_path());
  std::ofstream(file) << torn;
  auto domain = open();
  EXPECT_FALSE(domain.get("settings.appTheme"));
  EXPECT_FALSE(domain.snapshot());
  EXPECT_EQ(domain.remove("settings.appTheme"), false);
  EXPECT_THAT(domain.takeProblems(), ElementsAre(PreferenceProblem{Kind::unparsable, file, 0, {}}));
  EXPECT_THAT(domain.takeProblems(), IsEmpty()) << "reported at each read";
  EXPECT_EQ(readFile(file), torn);

  ASSERT_TRUE(domain.set("a", true));
  const auto kept = keptAside();
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(kept[0].filename(), "com.kesto.Quillmeter.json.unreadable-20261118T110640Z");
  EXPECT_EQ(readFile(kept[0]), torn);
  EXPECT_THAT(domain.takeProblems(), ElementsAre(PreferenceProblem{Kind::keptAside, file, 0, kept[0]}));
  EXPECT_EQ(open().snapshot(), (PreferenceSnapshot{{"a", true}}));

  std::ofstream(file) << "";  // cut off within the same second: another name
  ASSERT_TRUE(domain.set("b", true));
  EXPECT_EQ(keptAside().size(), 2u);
  EXPECT_EQ(readFile(kept[0]), torn);
}

TEST_F(JsonPreferenceDomainTest, valuesReadBeforeAFileWasTornStayAndAreWrittenAgain) {
  auto domain = open();
  ASSERT_TRUE(domain.apply({{"a", "kept"s}, {"b", true}}));
  std::ofstream(file) << "{\"a\": \"ke";
  EXPECT_EQ(domain.get("a"), PreferenceValue("kept"s));
  EXPECT_THAT(domain.refresh(), IsEmpty());
  ASSERT_TRUE(domain.set("b", true)) << "the same value, but the file lacks it";
  EXPECT_EQ(open().snapshot(), (PreferenceSnapshot{{"a", "kept"s}, {"b", true}}));
  EXPECT_EQ(keptAside().size(), 1u);
}

TEST_F(JsonPreferenceDomainTest, tooManyTornFilesStopWritingInsteadOfLosingOne) {
  fs::create_directories(file.parent_path());
  for (int i = 0; i < JsonPreferenceDomain::maximumKeptAside; ++i) {
    std::ofstream(fs::path(file) += ".unreadable-" + std::to_string(i)) << i;
  }
  std::ofstream(file) << "torn";
  auto domain = open();
  const auto written = domain.set("a", true);
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error(), (PreferenceProblem{Kind::unparsable, file, EEXIST, {}}));
  EXPECT_EQ(readFile(file), "torn");
}

TEST_F(JsonPreferenceDomainTest, aFileBeyondTheBoundIsNotReadAndKeptAside) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << "{}";
  fs::resize_file(file, JsonPreferenceDomain::maximumFileBytes + 1);
  auto domain = open();
  EXPECT_FALSE(domain.snapshot());
  ASSERT_TRUE(domain.set("a", true));
  EXPECT_EQ(keptAside().size(), 1u);
  const auto tooLong = domain.set("long", std::string(JsonPreferenceDomain::maximumFileBytes, 'x'));
  ASSERT_FALSE(tooLong);
  EXPECT_EQ(tooLong.error().systemError, EFBIG);
  EXPECT_EQ(open().snapshot(), (PreferenceSnapshot{{"a", true}}));
}

TEST_F(JsonPreferenceDomainTest, aLinkedFileStaysALinkAlsoWhenItIsTorn) {
  const auto target = scratch.write("dotfiles/settings.json", R"({"a": 1})");
  fs::create_directories(file.parent_path());
  fs::create_symlink("../../dotfiles/settings.json", file);
  auto domain = open();
  ASSERT_TRUE(domain.set("b", true));
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(parseJsonPreferences(readFile(target))->size(), 2u);

  std::ofstream(target) << "torn";
  ASSERT_TRUE(domain.set("b", false));
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(parseJsonPreferences(readFile(target))->at("b").value, PreferenceValue(false));
  EXPECT_EQ(std::distance(fs::directory_iterator(target.parent_path()), {}), 2);
}

TEST_F(JsonPreferenceDomainTest, whatIsNoRegularFileIsReportedAndNeverReplaced) {
  fs::create_directories(file);
  auto onFolder = open();
  EXPECT_FALSE(onFolder.get("a"));
  EXPECT_EQ(onFolder.set("a", true).error(), (PreferenceProblem{Kind::unreadable, file, EISDIR, {}}));
  EXPECT_TRUE(fs::is_directory(file));

  fs::remove(file);
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  auto onPipe = open();  // must not wait for somebody who writes into it
  EXPECT_FALSE(onPipe.get("a"));
  EXPECT_EQ(onPipe.set("a", true).error().kind, Kind::unreadable);
  EXPECT_TRUE(fs::is_fifo(file));
}

TEST_F(JsonPreferenceDomainTest, whereNothingCanBeWrittenReadingWorks) {
  const auto blocker = scratch.write("blocker", "");
  for (const fs::path& place : {blocker / "quillmeter/x.json", fs::path("/proc/quillmeter/x.json")}) {
    JsonPreferenceDomain domain("x", place, fixedClock);
    EXPECT_FALSE(domain.snapshot());
    EXPECT_THAT(domain.takeProblems(), IsEmpty()) << "a file that is not there is no problem";
    const auto written = domain.set("a", true);
    ASSERT_FALSE(written) << place;
    EXPECT_EQ(written.error().kind, Kind::unwritable);
    EXPECT_NE(written.error().systemError, 0);
    EXPECT_FALSE(domain.get("a")) << "a value that was not written is read";
  }
}

TEST_F(JsonPreferenceDomainTest, aFileWithoutPermissionIsReportedNeverReplacedAndReadOnceItMayBe) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << R"({"a": 1})";
  fs::permissions(file, fs::perms::none);
  for (fs::path folder = file.parent_path(); folder != scratch.path().parent_path(); folder = folder.parent_path()) {
    fs::permissions(folder, fs::perms::all);
  }
  const int status = statusOfChild([&] {
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 && setresuid(nobody, nobody, 0) != 0) return 1;  // root's rights come back below
    auto domain = open();
    if (domain.get("a")) return 2;
    const auto problems = domain.takeProblems();
    if (problems.size() != 1 || problems[0] != PreferenceProblem{Kind::unreadable, file, EACCES, {}}) return 3;
    const auto written = domain.set("a", true);
    if (written || written.error() != problems[0]) return 4;
    if (geteuid() == nobody && setresuid(0, 0, 0) != 0) return 5;
    fs::permissions(file, fs::perms::owner_read);
    return domain.get("a") == PreferenceValue(std::int64_t{1}) ? 0 : 6;
  });
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(readFile(file), R"({"a": 1})");
}

TEST_F(JsonPreferenceDomainTest, aLockThatOthersHoldEndsInBusyAndOneThatWasRemovedIsMadeAgain) {
  auto domain = open({.synchronize = false, .lockPatience = std::chrono::milliseconds(0)});
  ASSERT_TRUE(domain.set("a", true));
  const fs::path lockFile = fs::path(file) += ".lock";
  const FileDescriptor other(::open(lockFile.c_str(), O_RDWR | O_CLOEXEC));
  struct flock all {};
  all.l_type = F_WRLCK;
  ASSERT_EQ(::fcntl(other.get(), F_OFD_SETLK, &all), 0);
  EXPECT_EQ(domain.set("a", false).error().kind, Kind::busy);
  EXPECT_EQ(domain.get("a"), PreferenceValue(true)) << "reading needs no lock";

  fs::remove(lockFile);
  EXPECT_TRUE(open({.synchronize = false, .lockPatience = std::chrono::milliseconds(0)}).set("b", true));
  all.l_type = F_UNLCK;
  ASSERT_EQ(::fcntl(other.get(), F_OFD_SETLK, &all), 0);
  EXPECT_TRUE(domain.set("a", false));
  EXPECT_TRUE(fs::exists(lockFile));
}

TEST_F(JsonPreferenceDomainTest, whoWaitsForTheLockGetsItFromAProgramThatWritesWithoutAPause) {
  const fs::path lockFile = fs::path(file) += ".lock";
  std::atomic<bool> isWaiting = false;
  std::atomic<bool> isDone = false;
  std::thread greedy([&] {
    FileLock lock(lockFile);
    while (!isDone) {
      const auto hold = lock.acquire(std::chrono::seconds(60));
      while (!isWaiting) std::this_thread::yield();
    }
  });
  FileLock patient(lockFile);
  isWaiting = true;
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(patient.acquire(std::chrono::seconds(10)));
  isDone = true;
  greedy.join();
}

TEST_F(JsonPreferenceDomainTest, aValueWithoutTextIsRefusedWithAllThatComeWithIt) {
  auto domain = open();
  EXPECT_EQ(domain.apply({{"a", true}, {"b", std::string("\xFF")}}).error().kind, Kind::invalidValue);
  EXPECT_EQ(domain.set("\xFF", true).error().kind, Kind::invalidValue);
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(JsonPreferenceDomainTest, threadsMayShareADomain) {
  auto domain = open();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&domain, t] {
      for (std::int64_t i = 0; i < 25; ++i) {
        EXPECT_TRUE(domain.set("key" + std::to_string(t), i));
        EXPECT_EQ(domain.get("key" + std::to_string(t)), PreferenceValue(i));
        domain.refresh();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(open().snapshot()->size(), 4u);
}

}  // namespace
}  // namespace quillmeter
