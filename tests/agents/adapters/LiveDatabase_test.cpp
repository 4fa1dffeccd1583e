// A reader beside a process that writes, checkpoints, closes, comes back and is killed at random points.
#include <atomic>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <new>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "DatabaseFixture.h"
#include "agents/adapters/OpenCodeUsageAdapter.h"

namespace quillmeter {
namespace {

using test::AgentDatabase;
using test::folderState;
using test::TemporaryDirectory;

constexpr std::int64_t tokensPerMessage = 7;
constexpr std::int64_t createdMilliseconds = 1'790'000'000'000;

// What writer and reader both see. A message counts as begun before its transaction and as committed after it.
struct Progress {
  std::atomic<std::int64_t> begun{0};
  std::atomic<std::int64_t> committed{0};
};

class SharedProgress {
 public:
  SharedProgress()
      : memory_(mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (memory_ == MAP_FAILED) throw std::bad_alloc();
    progress_ = new (memory_) Progress;
  }
  SharedProgress(const SharedProgress&) = delete;
  SharedProgress& operator=(const SharedProgress&) = delete;
  ~SharedProgress() { munmap(memory_, sizeof(Progress)); }
  Progress* operator->() const { return progress_; }
  Progress& operator*() const { return *progress_; }

 private:
  void* memory_;
  Progress* progress_;
};

// One life of the agent: opens the database and writes messages, one transaction each, with checkpoints of every kind
// in between. Each byte from `permits` is one message, so that the writer neither outruns the reader nor spins. False
// when there are no more.
bool live(const std::filesystem::path& path, int permits, Progress& progress, std::mt19937& random) {
  AgentDatabase agent(path, "PRAGMA journal_mode=WAL; PRAGMA synchronous=OFF; PRAGMA wal_autocheckpoint=20;");
  const std::int64_t present = agent.integer("SELECT count(*) FROM message");
  progress.begun = present;
  progress.committed = present;
  for (auto messages = random() % 20; messages > 0; --messages) {
    char permit = 0;
    if (read(permits, &permit, 1) != 1) return false;
    const auto number = ++progress.begun;
    agent.run("BEGIN; INSERT INTO message VALUES('m" + std::to_string(number) + "', 's" + std::to_string(number % 5) +
              "', 1790000000000, 1790000000000, '{\"role\":\"assistant\",\"tokens\":{\"input\":7},\"filling\":\"" +
              std::string(random() % 3000, 'x') +
              "\"}'); UPDATE message SET time_updated = time_updated + 1 WHERE id = 'm1'; COMMIT");
    progress.committed = number;
    constexpr const char* checkpoints[] = {"PASSIVE", "FULL", "RESTART", "TRUNCATE"};
    const auto choice = random() % 12;
    if (choice >= 4) continue;
    agent.run("PRAGMA busy_timeout=1; PRAGMA wal_checkpoint(" + std::string(checkpoints[choice]) +
              "); PRAGMA busy_timeout=10000");
  }
  return true;
}

pid_t startAgent(const std::filesystem::path& path, const int (&permits)[2], Progress& progress, unsigned seed) {
  const pid_t child = fork();
  if (child != 0) return child;
  close(permits[1]);
  try {
    std::mt19937 random(seed);
    while (live(path, permits[0], progress, random)) continue;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "agent: %s\n", error.what());
    _exit(1);
  }
  _exit(0);
}

// The number of messages that a scan found; -1 for an unreadable database, -2 for an event that came twice.
std::int64_t scan(const std::filesystem::path& root) {
  SystemFileOpener opener;
  OpenCodeUsageAdapter adapter(opener);
  std::set<std::string> ids;
  std::int64_t tokens = 0;
  for (const auto& session : adapter.sessions(root, Date{createdMilliseconds * 1000})) {
    tokens += session.metrics().totalTokens;
    for (const auto& event : session.events) {
      if (!ids.insert(event.id).second) return -2;
    }
  }
  if (adapter.unreadableSourceCount() != 0) return -1;
  return tokens == static_cast<std::int64_t>(ids.size()) * tokensPerMessage ? static_cast<std::int64_t>(ids.size())
                                                                            : -2;
}

TEST(LiveDatabase, totalsNeverFallNeverDoubleAndEndExactBesideAWriterThatIsKilledAtRandomPoints) {
  constexpr int scans = 300;
  const TemporaryDirectory folder;
  const auto path = folder.path() / "opencode.db";
  AgentDatabase(path,
                "CREATE TABLE message(id TEXT PRIMARY KEY, session_id TEXT, time_created INTEGER, time_updated "
                "INTEGER, data TEXT);");
  const SharedProgress progress;
  std::mt19937 random(20'261'121);
  int permits[2];
  ASSERT_EQ(pipe(permits), 0);
  pid_t agent = startAgent(path, permits, *progress, 1);
  std::int64_t last = 0;
  int readable = 0;
  for (int i = 0; i < scans; ++i) {
    SCOPED_TRACE("scan " + std::to_string(i));
    ASSERT_EQ(write(permits[1], "....", 4), 4);
    const std::int64_t least = progress->committed;
    const std::int64_t found = scan(folder.path());
    const std::int64_t most = progress->begun;
    ASSERT_NE(found, -2) << "an event came twice";
    if (found >= 0) {
      ++readable;
      EXPECT_GE(found, std::max(last, least));
      EXPECT_LE(found, most);
      last = std::max(last, found);
    }
    if (random() % 6 != 0) continue;

    kill(agent, SIGKILL);
    waitpid(agent, nullptr, 0);
    if (random() % 3 == 0) std::filesystem::remove(path.string() + "-shm");
    const auto before = folderState(folder.path());
    const std::int64_t dead = scan(folder.path());
    EXPECT_EQ(folderState(folder.path()), before);
    EXPECT_GE(dead, std::max<std::int64_t>(last, progress->committed));
    EXPECT_LE(dead, progress->begun);
    last = dead;
    agent = startAgent(path, permits, *progress, static_cast<unsigned>(i) + 2);
  }
  close(permits[1]);
  int status = 0;
  waitpid(agent, &status, 0);
  close(permits[0]);
  EXPECT_EQ(status, 0);
  EXPECT_GT(readable, scans / 2);  // on a busy machine a lock may be held for longer than the reader waits
  EXPECT_EQ(scan(folder.path()), progress->committed.load());
  EXPECT_EQ(AgentDatabase(path).integer("SELECT count(*) FROM message"), progress->committed.load());
  std::printf("%d of %d scans readable, %lld messages\n", readable, scans,
              static_cast<long long>(progress->committed.load()));
}

}  // namespace
}  // namespace quillmeter
