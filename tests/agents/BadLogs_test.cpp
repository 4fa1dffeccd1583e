// Whatever stands in the folder of an agent: nothing hangs, nothing is thrown, memory stays bounded and the rest is
// counted.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "AgentLogs.h"

namespace quillmeter {
namespace {

using test::claudeLine;
using test::codexLine;
using test::date;
using test::sourceAt;

class BadLogs : public testing::Test {
 protected:
  void SetUp() override {
    folder_.write("2026/11/21/good.jsonl", good());
    test::setModified(folder_.path() / "2026/11/21/good.jsonl", date("2026-11-21T11:00:00Z"));
  }
  static std::string good() {
    return codexLine("2026-11-21T10:00:00Z", {5, 0, 0}) + claudeLine("2026-11-21T10:00:00Z", "1", {70, 0, 0, 0});
  }
  void write(const std::string& name, std::string_view bytes) {
    test::setModified(folder_.write("2026/11/21/" + name, bytes), date("2026-11-21T11:00:00Z"));
  }
  // The tokens of today when the folder is taken for that of Codex and for that of Claude.
  std::string totals(FileOpener& opener) {
    AgentUsageCollector collector(opener, Calendar::utc(), {});
    const AgentUsageSnapshot snapshot = collector.collect(
        {sourceAt(AgentLogProvider::codex, folder_.path()), sourceAt(AgentLogProvider::claude, folder_.path())},
        date("2026-11-21T12:00:00Z"));
    return std::to_string(snapshot.providers.at(0).todayMetrics.totalTokens) + " " +
           std::to_string(snapshot.providers.at(1).todayMetrics.totalTokens) + " " +
           std::to_string(snapshot.providers.at(0).unreadableSourceCount.value());
  }
  std::string totals() {
    SystemFileOpener opener;
    return totals(opener);
  }

  test::TemporaryDirectory folder_;
};

TEST_F(BadLogs, whatIsNoRegularFileIsNotTouched) {
  const auto day = folder_.path() / "2026/11/21";
  std::filesystem::create_directories(day / "folder.jsonl");
  ASSERT_EQ(mkfifo((day / "fifo.jsonl").c_str(), 0600), 0);
  std::filesystem::create_symlink(day / "good.jsonl", day / "link.jsonl");
  std::filesystem::create_symlink("loop.jsonl", day / "loop.jsonl");
  std::filesystem::create_directory_symlink(folder_.path(), day / "up");
  write("good.jsonl.bak", good());
  write(".jsonl", good());
  EXPECT_EQ(totals(), "5 70 0");
}

TEST_F(BadLogs, brokenLinesDoNotHideTheGoodOnes) {
  const std::string both = "\"token_count\" \"assistant\" ";
  std::string bytes;
  const std::vector<std::string> lines = {
      both,
      "{",
      both + "\xFF\xFE",
      std::string("\0\0", 2) + both,
      std::string(10'000, '[') + both,
      std::string(200'000, '{') + both,
      R"({"payload":{"type":"token_count","info":{"total_token_usage":{"total_tokens":9223372036854775808}}}})",
      R"({"type":"assistant","timestamp":"2026-11-21T10:00:00Z","message":{"usage":{"input_tokens":1e999}}})"};
  for (const std::string& bad : lines) {
    bytes += bad + "\n";
  }
  write("bad.jsonl", bytes + good());
  EXPECT_EQ(totals(), "10 140 0");
}

TEST_F(BadLogs, aLineOfThreeHundredMegabytesIsDropped) {
  const auto path = folder_.path() / "2026/11/21/huge.jsonl";
  write("huge.jsonl", "{\"a\":\"assistant\",\"token_count\":\"");
  std::filesystem::resize_file(path, 300'000'000);  // a hole
  std::ofstream(path, std::ios::app | std::ios::binary) << "\"}\n" << good();
  test::setModified(path, date("2026-11-21T11:00:00Z"));
  EXPECT_EQ(totals(), "10 140 0");
}

TEST_F(BadLogs, aLongLineUnderTheBoundIsStillRead) {
  write("long.jsonl", claudeLine("2026-11-21T10:00:00Z", "2", {900, 0, 0, 0}, std::string(9'000'000, 'x')) +
                          R"({"timestamp":"2026-11-21T10:00:00Z","payload":{"type":"token_count","info":{"x":")" +
                          std::string(3'000'000, 'y') + R"(","total_token_usage":{"total_tokens":20}}}})");
  EXPECT_EQ(totals(), "25 970 0");
}

// Opens a file and cuts it at once, as when it is rewritten between listing and reading.
class ShrinkingOpener final : public FileOpener {
 public:
  explicit ShrinkingOpener(std::uintmax_t size) : size_(size) {}
  tl::expected<FileDescriptor, int> open(const std::filesystem::path& path) override {
    auto file = system_.open(path);
    if (path.filename() == "shrinks.jsonl") std::filesystem::resize_file(path, size_);
    return file;
  }

 private:
  std::uintmax_t size_;
  SystemFileOpener system_;
};

TEST_F(BadLogs, aFileThatShrinksGivesWhatIsLeft) {
  for (const auto& [size, expected] :
       std::vector<std::pair<std::uintmax_t, std::string>>{{0, "5 70 0"}, {good().size() - 2, "10 70 0"}}) {
    write("shrinks.jsonl", good() + std::string(3'000'000, ' '));
    ShrinkingOpener opener(size);
    EXPECT_EQ(totals(opener), expected);
  }
}

// A descriptor that cannot be read from stands for a failing disk.
class FailingOpener final : public FileOpener {
 public:
  tl::expected<FileDescriptor, int> open(const std::filesystem::path& path) override {
    if (path.filename() == "unreadable.jsonl") return FileDescriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (path.filename() == "forbidden.jsonl") return tl::unexpected(EACCES);
    return system_.open(path);
  }

 private:
  SystemFileOpener system_;
};

TEST_F(BadLogs, whatCannotBeOpenedOrReadIsCounted) {
  write("unreadable.jsonl", good());
  write("forbidden.jsonl", good());
  FailingOpener opener;
  EXPECT_EQ(totals(opener), "5 70 2");
}

}  // namespace
}  // namespace quillmeter
