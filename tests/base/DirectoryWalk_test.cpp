#include "base/DirectoryWalk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <map>
#include <string>
#include <vector>

#include "base/Iso8601.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter {
namespace {

namespace fs = std::filesystem;

struct Found {
  WalkOutcome outcome;
  std::map<std::string, std::int64_t> sizes;  // by path below the root
  std::vector<std::string> asked;
};

Found walk(
    const fs::path& root, WalkOptions options = {},
    const std::function<bool(std::string_view)>& wanted = [](auto) { return true; }) {
  Found found;
  found.outcome = walkDirectory(
      root, options,
      [&](std::string_view name) {
        found.asked.emplace_back(name);
        return wanted(name);
      },
      [&](const WalkedFile& file) {
        EXPECT_TRUE(found.sizes.emplace(file.path.lexically_relative(root).string(), file.size).second) << file.path;
      });
  return found;
}

TEST(DirectoryWalk, visitsRegularFilesAndNeverFollowsALink) {
  const test::TemporaryDirectory outside;
  outside.write("secret.jsonl", "x");
  const test::TemporaryDirectory folder;
  const fs::path root = folder.path();
  folder.write("a.jsonl", "12345");
  folder.write("2026/11/21/日志.jsonl", "");
  folder.write("2026/other.txt", "1");
  folder.write(".hidden/x.jsonl", "12");
  folder.write("2026/.y.jsonl", "123");
  fs::create_directories(root / "folder.jsonl");
  fs::create_directory_symlink(root, root / "2026" / "loop");
  fs::create_directory_symlink(outside.path(), root / "out");
  fs::create_symlink(root / "a.jsonl", root / "link.jsonl");
  ASSERT_EQ(::mkfifo((root / "fifo.jsonl").c_str(), 0600), 0);

  const auto jsonl = [](std::string_view name) { return name.ends_with(".jsonl"); };
  const Found all = walk(root, {}, jsonl);
  EXPECT_TRUE(all.outcome.rootListed);
  EXPECT_EQ(all.outcome.unlistedFolders, 0);
  using Sizes = std::map<std::string, std::int64_t>;
  EXPECT_EQ(all.sizes,
            (Sizes{{"a.jsonl", 5}, {"2026/11/21/日志.jsonl", 0}, {".hidden/x.jsonl", 2}, {"2026/.y.jsonl", 3}}));
  EXPECT_EQ(walk(root, {.skipHidden = true}, jsonl).sizes, (Sizes{{"a.jsonl", 5}, {"2026/11/21/日志.jsonl", 0}}));

  fs::create_directory_symlink(root, outside.path() / "root");
  const Found linked = walk(outside.path() / "root", {}, jsonl);
  EXPECT_EQ(linked.sizes, all.sizes) << "the root itself may be a link";
  EXPECT_EQ(walk(root.string() + "/", {}, jsonl).sizes.size(), all.sizes.size());
}

TEST(DirectoryWalk, tellsTheModificationDateToTheMicrosecond) {
  const test::TemporaryDirectory folder;
  const std::pair<timespec, const char*> table[] = {{{1'714'557'600, 123'456'789}, "2024-05-01T10:00:00.123456Z"},
                                                    {{-1, 999'999'999}, "1969-12-31T23:59:59.999999Z"}};
  for (const auto& [time, text] : table) {
    const timespec both[] = {time, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, folder.write("file", "x").c_str(), both, 0), 0);
    walkDirectory(
        folder.path(), {}, [](auto) { return true; },
        [&](const WalkedFile& file) { EXPECT_EQ(formatIso8601(file.modifiedAt), text); });
  }
}

TEST(DirectoryWalk, aRootThatIsNoFolderIsNotListed) {
  const test::TemporaryDirectory folder;
  fs::create_symlink("missing", folder.path() / "dangling");
  for (const fs::path& root :
       {folder.write("file", "x"), folder.path() / "missing", folder.path() / "dangling", fs::path("")}) {
    const Found found = walk(root);
    EXPECT_FALSE(found.outcome.rootListed) << root;
    EXPECT_TRUE(found.sizes.empty());
  }
}

TEST(DirectoryWalk, foldersBeyondTheDepthAreCountedInsteadOfListed) {
  const test::TemporaryDirectory folder;
  fs::path deep;
  for (int i = 0; i < 70; ++i) deep /= "d";
  folder.write(deep / "too-deep", "x");
  fs::path reachable;
  for (int i = 0; i < 64; ++i) reachable /= "d";
  folder.write(reachable / "deepest", "x");
  const Found found = walk(folder.path());
  EXPECT_TRUE(found.outcome.rootListed);
  EXPECT_EQ(found.outcome.unlistedFolders, 1);
  EXPECT_EQ(found.sizes.size(), 1U);
}

// Running out of descriptors is a fault that holds for root as well.
TEST(DirectoryWalk, aFolderThatCannotBeOpenedIsCountedAndNamed) {
  const test::TemporaryDirectory folder;
  folder.write("a/b/c/d/e/f/file", "x");
  folder.write("top", "x");
  rlimit old{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &old), 0);
  const int next = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ASSERT_GE(next, 0);
  ::close(next);
  const rlimit few{static_cast<rlim_t>(next) + 3, old.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  const Found found = walk(folder.path());
  const rlimit none{static_cast<rlim_t>(next), old.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const Found nothing = walk(folder.path());
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &old), 0);
  EXPECT_TRUE(found.outcome.rootListed);
  EXPECT_EQ(found.outcome.unlistedFolders, 1);
  EXPECT_EQ(found.sizes.size(), 1U);
  ASSERT_EQ(found.outcome.named.size(), 1U);
  EXPECT_EQ(found.outcome.named[0].path.rfind((folder.path() / "a").string(), 0), 0U);
  EXPECT_EQ(found.outcome.named[0].error, EMFILE);
  EXPECT_FALSE(nothing.outcome.rootListed);
  ASSERT_EQ(nothing.outcome.named.size(), 1U);
  EXPECT_EQ(nothing.outcome.named[0].path, folder.path());
}

TEST(DirectoryWalk, whatVanishesOrChangesItsKindMeanwhileIsLeftOut) {
  const test::TemporaryDirectory folder;
  const fs::path root = folder.path();
  for (const char* name : {"gone", "folder", "link", "stays"}) folder.write(name, "x");
  const Found found = walk(root, {}, [&](std::string_view name) {
    if (name == "stays") return true;
    fs::remove(root / name);
    if (name == "folder") fs::create_directory(root / name);
    if (name == "link") fs::create_symlink("stays", root / name);
    return true;
  });
  EXPECT_EQ(found.sizes, (std::map<std::string, std::int64_t>{{"stays", 1}}));
  EXPECT_EQ(found.outcome.unlistedFolders, 0);
}

}  // namespace
}  // namespace quillmeter
