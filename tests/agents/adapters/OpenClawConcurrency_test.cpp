#include <sched.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <atomic>
#include <cstdio>
#include <random>

#include "agents/adapters/OpenClawFixture.h"

namespace quillmeter {
namespace {

using namespace test;
namespace fs = std::filesystem;

// What the two processes tell each other. Every event holds one token.
struct Progress {
  std::atomic<std::int64_t> begun{0};      // events that may be in the database
  std::atomic<std::int64_t> committed{0};  // events that are
  std::atomic<std::int64_t> permitted{0};  // how far the writer may go
  std::atomic<bool> stop{false};
};

std::string shellQuoted(const std::string& text) {
  return "'" + text + "'";
}

// The agent: appends answers, checkpoints, and moves its sessions into each kind of archive. Runs in a process of its
// own, which may be killed at any instant; the next one goes on where the database stands.
class Writer {
 public:
  Writer(const fs::path& agent, Progress& progress)
      : agent_(agent), progress_(progress), database_(agent / "agent/openclaw-agent.sqlite") {
    database_.run("PRAGMA journal_mode = WAL");
    database_.run("PRAGMA synchronous = OFF");  // a killed process loses nothing that the kernel has
    database_.run(
        "CREATE TABLE IF NOT EXISTS transcript_events (session_id TEXT, seq INTEGER, event_json TEXT, created_at "
        "INTEGER, "
        "event_zstd BLOB, event_utf8_bytes INTEGER, PRIMARY KEY (session_id, seq))");
    database_.run(
        "CREATE TABLE IF NOT EXISTS session_transcript_archives (session_id TEXT, encoding TEXT, archive_blob BLOB, "
        "created_at INTEGER)");
    database_.run(
        "CREATE TABLE IF NOT EXISTS session_transcript_cold_archives (session_id TEXT, archive_name TEXT, "
        "archive_sha256 TEXT, "
        "storage TEXT, archive_blob BLOB)");
    database_.run("CREATE TABLE IF NOT EXISTS written (events INTEGER)");
  }

  void work() {
    std::int64_t count = database_.integer("SELECT max(events) FROM written");
    progress_.committed = count;
    progress_.begun = count;
    const pid_t reader = getppid();
    while (!progress_.stop && getppid() == reader) {
      if (count >= progress_.permitted) {
        sched_yield();
        continue;
      }
      ++count;
      append(count);
      if (count % 17 == 0)
        database_.run(count % 2 == 0 ? "PRAGMA wal_checkpoint(PASSIVE)" : "PRAGMA wal_checkpoint(TRUNCATE)");
      if (count % eventsPerSession == 0) archive(session(count), count / eventsPerSession % 5);
    }
  }

 private:
  static constexpr std::int64_t eventsPerSession = 20;

  static std::string session(std::int64_t count) { return "s" + std::to_string((count - 1) / eventsPerSession); }

  void append(std::int64_t count) {
    progress_.begun = count;
    database_.run("BEGIN IMMEDIATE");
    const std::string event =
        count % 3 == 0 ? answer("", 1, std::to_string(1'700'000'000 + count)) : answer(std::to_string(count), 1);
    database_.run("INSERT INTO transcript_events VALUES (?, ?, ?, 1700000000000, NULL, NULL)",
                  {session(count), count, event});
    database_.run("INSERT INTO written VALUES (?)", {count});
    database_.run("COMMIT");
    progress_.committed = count;
  }

  void archive(const std::string& id, std::int64_t kind) {
    std::string lines;
    std::string cold = coldHeader;
    for (const std::string& event : database_.texts(
             "SELECT event_json FROM transcript_events WHERE session_id = " + shellQuoted(id) + " ORDER BY seq")) {
      lines += event + "\n";
      cold += coldEvent(event);
    }
    const std::string coldBytes = zstdFrame(cold);
    const std::string digest = hexDigest(coldBytes);
    if (kind == 1) publish("sessions/cold/" + digest + ".jsonl.zst", coldBytes);
    if (kind == 2) publish("sessions/" + id + ".jsonl.deleted.2026-01-02T03-04-05.678Z.zst", zstdFrame(lines));
    if (kind == 3) {
      publish("sessions/" + id + ".jsonl", lines);
      const fs::path path = agent_ / "sessions" / (id + ".jsonl");
      fs::rename(path, path.native() + ".reset.2026-01-02T03-04-05.678Z");
    }
    database_.run("BEGIN IMMEDIATE");
    if (kind == 0)
      database_.run("INSERT INTO session_transcript_archives VALUES (?, 'zstd', ?, 1)", {id, Blob{zstdFrame(lines)}});
    if (kind == 1)
      database_.run("INSERT INTO session_transcript_cold_archives VALUES (?, ?, ?, 'file', NULL)",
                    {id, digest + ".jsonl.zst", digest});
    if (kind == 4)
      database_.run("INSERT INTO session_transcript_cold_archives VALUES (?, NULL, ?, 'sqlite', ?)",
                    {id, digest, Blob{coldBytes}});
    database_.run("DELETE FROM transcript_events WHERE session_id = ?", {id});
    database_.run("COMMIT");
  }

  void publish(const std::string& relative, const std::string& bytes) const {
    const fs::path path = agent_ / relative;
    fs::create_directories(path.parent_path());
    const fs::path temporary = path.native() + ".tmp";
    std::ofstream(temporary, std::ios::binary) << bytes;
    fs::rename(temporary, path);
  }

  fs::path agent_;
  Progress& progress_;
  SqliteWriter database_;
};

class OpenClawConcurrency : public OpenClawTest {
 protected:
  OpenClawConcurrency()
      : memory_(mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)),
        progress(*new (memory_) Progress) {}
  ~OpenClawConcurrency() override {
    if (writer_ > 0) kill();
    munmap(memory_, sizeof(Progress));
  }

  void start() {
    writer_ = fork();
    ASSERT_GE(writer_, 0);
    if (writer_ != 0) return;
    int code = 0;
    try {
      Writer(folder.path() / "main", progress).work();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "writer: %s\n", error.what());
      code = 1;
    }
    _exit(code);
  }
  void kill() {
    ::kill(writer_, SIGKILL);
    waitpid(std::exchange(writer_, 0), nullptr, 0);
  }
  // Until the writer has committed so many events; false when it gave up before.
  bool awaitWriter(std::int64_t events) {
    while (progress.committed < events) {
      if (waitpid(writer_, nullptr, WNOHANG) != 0) {
        writer_ = 0;
        return false;
      }
      sched_yield();
    }
    return true;
  }
  int finish() {
    progress.stop = true;
    int status = 0;
    waitpid(std::exchange(writer_, 0), &status, 0);
    return status;
  }
  std::int64_t total() {
    std::int64_t tokens = 0;
    for (const auto& [session, count] : scan()) tokens += count;
    return tokens;
  }

 private:
  void* memory_;
  pid_t writer_ = 0;

 protected:
  Progress& progress;
};

TEST_F(OpenClawConcurrency, totalsNeitherFallNorDoubleWhileTheAgentWritesMovesAndIsKilled) {
  clock.instant = SystemClock().now();
  constexpr int scans = 300;
  constexpr std::int64_t eventsPerScan = 5;
  std::mt19937 random(3);
  start();
  constexpr int maximumIncomplete = 10;
  int incomplete = 0;
  std::int64_t last = 0;
  for (int i = 0; i < scans; ++i) {
    ASSERT_TRUE(awaitWriter(progress.permitted - eventsPerScan));  // neither gets far ahead
    progress.permitted += eventsPerScan;
    const std::int64_t least = std::max<std::int64_t>(last, progress.committed);
    std::int64_t seen = total();
    // On a busy machine the agent may be suspended while it holds a lock: such a scan says that it is incomplete.
    while (adapter.unreadableSourceCount() != 0 && incomplete++ < maximumIncomplete) seen = total();
    ASSERT_GE(seen, least) << "scan " << i;
    ASSERT_LE(seen, progress.begun.load()) << "scan " << i;
    ASSERT_EQ(adapter.unreadableSourceCount(), 0) << "scan " << i;
    last = seen;
    if (random() % 10 == 0) {
      kill();
      start();
    }
  }
  ASSERT_TRUE(awaitWriter(progress.permitted));
  ASSERT_EQ(finish(), 0);
  EXPECT_EQ(total(), scans * eventsPerScan);
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

}  // namespace
}  // namespace quillmeter
