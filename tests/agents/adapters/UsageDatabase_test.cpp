#include "agents/adapters/UsageDatabase.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>

#include "DatabaseFixture.h"

namespace quillmeter {
namespace {

using test::AgentDatabase;
using test::asLeftByKill;
using test::folderState;
using test::inChildProcess;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* writeAhead = "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;";
constexpr const char* threeRows = "CREATE TABLE t(n); INSERT INTO t VALUES(1),(2),(3);";

std::vector<std::int64_t> numbers(UsageDatabase& database, const std::string& sql = "SELECT n FROM t ORDER BY n") {
  std::vector<std::int64_t> found;
  database.rows(sql, [&](const UsageRow& row) { found.push_back(std::get<std::int64_t>(row.value("n"))); });
  return found;
}

UsageDatabaseLimits copyingInto(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  UsageDatabaseLimits limits;
  limits.copyFolder = folder;
  return limits;
}

// A clock that shows a second more at every look.
class RacingClock final : public MonotonicClock {
 public:
  double uptime() const override { return seconds_ += 1; }

 private:
  mutable double seconds_ = 0;
};

// ---- states of the files ----

class LeftBehind : public testing::Test {
 protected:
  enum class Copy { never, allowed };

  // Reads 1, 2, 3 from the database and finds everything around it as it was.
  void expectReadWithoutTrace(const std::filesystem::path& path, Copy copy = Copy::never) {
    auto limits = copyingInto(folder_.path() / "copies");
    if (copy == Copy::never) limits.maximumCopyBytes = 0;
    const auto before = folderState(path.parent_path());
    {
      UsageDatabase database(path, limits);
      ASSERT_TRUE(database.isOpen());
      EXPECT_TRUE(database.rows("BEGIN"));
      EXPECT_THAT(numbers(database), ElementsAre(1, 2, 3));
      EXPECT_TRUE(database.rows("COMMIT"));
      EXPECT_THAT(numbers(database), ElementsAre(1, 2, 3));
      EXPECT_THAT(database.columns("t"), ElementsAre("n"));
      EXPECT_FALSE(database.wasDisturbed());
      EXPECT_EQ(folderState(path.parent_path()), before);
      EXPECT_TRUE(std::filesystem::is_empty(folder_.path() / "copies"));
    }
    EXPECT_EQ(folderState(path.parent_path()), before);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path() / "copies"));
  }

  // The newest rows are in the log only.
  std::filesystem::path killedWriter(const std::filesystem::path& name) {
    const auto path = folder_.path() / "live.db";
    std::filesystem::remove(path);
    AgentDatabase agent(path, std::string(writeAhead) + "CREATE TABLE t(n); INSERT INTO t VALUES(1);");
    agent.run("PRAGMA wal_checkpoint; INSERT INTO t VALUES(2),(3);");
    return asLeftByKill(path, folder_.path() / name);
  }

  TemporaryDirectory folder_;
};

TEST_F(LeftBehind, rollbackDatabaseIsReadInPlace) {
  const auto path = folder_.write("a/x.db", "");
  AgentDatabase(path, threeRows);
  expectReadWithoutTrace(path);
}

TEST_F(LeftBehind, properlyClosedWriteAheadDatabaseGetsNoLogAndNoIndex) {
  const auto path = folder_.write("a/x.db", "");
  AgentDatabase(path, std::string(writeAhead) + threeRows);
  ASSERT_FALSE(std::filesystem::exists(path.string() + "-wal"));
  expectReadWithoutTrace(path);
  folder_.write("a/x.db-wal", "");
  expectReadWithoutTrace(path);
  folder_.write("a/x.db-shm", "");
  expectReadWithoutTrace(path);
}

TEST_F(LeftBehind, logAndIndexOfAKilledWriterAreReadAndLeftAlone) {
  expectReadWithoutTrace(killedWriter("a"));
}

TEST_F(LeftBehind, damagedIndexOfAKilledWriterDoesNotMatter) {
  const auto path = killedWriter("a");
  std::fstream(path.string() + "-shm", std::ios::in | std::ios::out | std::ios::binary) << std::string(3000, '\x5A');
  expectReadWithoutTrace(path);
}

TEST_F(LeftBehind, logWhoseHeaderWasTornCountsAsEmpty) {
  const auto path = killedWriter("a");
  std::fstream(path.string() + "-wal", std::ios::in | std::ios::out | std::ios::binary) << std::string(4, '\0');
  for (const bool indexed : {true, false}) {
    if (!indexed) std::filesystem::remove(path.string() + "-shm");
    const auto before = folderState(path.parent_path());
    UsageDatabaseLimits limits;
    limits.maximumCopyBytes = 0;
    UsageDatabase database(path, limits);
    EXPECT_THAT(numbers(database), ElementsAre(1));
    EXPECT_EQ(folderState(path.parent_path()), before);
  }
}

TEST_F(LeftBehind, logWithoutIndexIsReadFromACopy) {
  const auto path = killedWriter("a");
  std::filesystem::remove(path.string() + "-shm");
  expectReadWithoutTrace(path, Copy::allowed);
}

TEST_F(LeftBehind, interruptedTransactionIsRolledBackInACopy) {
  const auto path = folder_.write("live.db", "");
  AgentDatabase agent(
      path, std::string(threeRows) + "CREATE TABLE filling(b); INSERT INTO filling VALUES(zeroblob(200000));");
  agent.run("PRAGMA cache_size=2; BEGIN; UPDATE t SET n = n + 10; UPDATE filling SET b = randomblob(200000);");
  const auto left = asLeftByKill(path, folder_.path() / "a");
  ASSERT_TRUE(std::filesystem::exists(left.string() + "-journal"));
  expectReadWithoutTrace(left, Copy::allowed);
}

TEST_F(LeftBehind, nameWithEveryAwkwardCharacterAndALinkToItAreFound) {
  const auto folder = folder_.path() / "50% of #1? &x=y 日志";
  const auto path = killedWriter(folder);
  expectReadWithoutTrace(path);
  std::filesystem::create_directory(folder_.path() / "links");
  std::filesystem::create_symlink(path, folder_.path() / "links" / "x.db");
  expectReadWithoutTrace(folder_.path() / "links" / "x.db");
}

TEST_F(LeftBehind, copyIsBounded) {
  const auto path = killedWriter("a");
  std::filesystem::remove(path.string() + "-shm");
  const auto before = folderState(path.parent_path());
  auto limits = copyingInto(folder_.path() / "copies");
  limits.maximumCopyBytes = 4096 + 1000;
  EXPECT_FALSE(UsageDatabase(path, limits).isOpen());
  limits.maximumCopyBytes = 1'000'000;
  EXPECT_TRUE(UsageDatabase(path, limits).isOpen());
  limits.copyFolder = folder_.path() / "nowhere";
  EXPECT_FALSE(UsageDatabase(path, limits).isOpen());
  EXPECT_EQ(folderState(path.parent_path()), before);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path() / "copies"));
}

TEST_F(LeftBehind, copiesOfKilledProcessesAreRemovedOnceTheyAreOld) {
  const auto path = killedWriter("a");
  std::filesystem::remove(path.string() + "-shm");
  const auto copies = folder_.path() / "copies";
  const auto limits = copyingInto(copies);
  for (const char* name : {"quillmeter-database-aB3dE6/database", "quillmeter-database-aB3dE6/database-wal",
                           "quillmeter-database-fresh1/database", "quillmeter-database-backup/letters"}) {
    folder_.write(std::filesystem::path("copies") / name, "x");
  }
  const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(2);
  for (const char* name : {"quillmeter-database-aB3dE6", "quillmeter-database-backup"})
    std::filesystem::last_write_time(copies / name, old);

  EXPECT_TRUE(UsageDatabase(path, limits).isOpen());
  EXPECT_FALSE(std::filesystem::exists(copies / "quillmeter-database-aB3dE6"));
  EXPECT_TRUE(std::filesystem::exists(copies / "quillmeter-database-fresh1/database"));
  EXPECT_TRUE(std::filesystem::exists(copies / "quillmeter-database-backup/letters"));
}

TEST_F(LeftBehind, everyStateIsReadFromAFolderThatCannotBeWritten) {
  std::vector<std::filesystem::path> paths;
  paths.push_back(killedWriter("shared"));
  paths.push_back(killedWriter("orphaned"));
  std::filesystem::remove(paths.back().string() + "-shm");
  paths.push_back(killedWriter("unreadableIndex"));
  std::filesystem::permissions(paths.back().string() + "-shm", std::filesystem::perms::none);
  paths.push_back(folder_.write("still/x.db", ""));
  AgentDatabase(paths.back(), std::string(writeAhead) + threeRows);
  paths.push_back(folder_.write("rollback/x.db", ""));
  AgentDatabase(paths.back(), threeRows);
  const auto readable = std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec |
                        std::filesystem::perms::others_read | std::filesystem::perms::others_exec;
  for (const auto& path : paths) std::filesystem::permissions(path.parent_path(), readable);
  std::filesystem::permissions(folder_.path(), readable | std::filesystem::perms::owner_write);

  constexpr int noUser = 99;
  constexpr uid_t nobody = 65534;
  const int code = inChildProcess([&] {
    // Permissions mean nothing to root.
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) return noUser;
    for (std::size_t i = 0; i < paths.size(); ++i) {
      UsageDatabase database(paths[i]);
      if (numbers(database) != std::vector<std::int64_t>{1, 2, 3}) return static_cast<int>(i) + 1;
    }
    return 0;
  });
  for (const auto& path : paths) std::filesystem::permissions(path.parent_path(), std::filesystem::perms::owner_all);
  if (code == noUser) GTEST_SKIP() << "cannot become an ordinary user here, and root may write everywhere";
  EXPECT_EQ(code, 0) << "number of the state that could not be read";
}

TEST_F(LeftBehind, writerThatComesBackWhileAStillDatabaseIsReadIsNoticed) {
  const auto path = folder_.write("x.db", "");
  AgentDatabase(path, std::string(writeAhead) + threeRows);
  std::vector<std::size_t> seen;
  const bool whole = UsageDatabase::readWhole(path, {}, [&](UsageDatabase& database) {
    seen.push_back(numbers(database).size());
    if (seen.size() > 1) return;
    EXPECT_EQ(inChildProcess([&] {
                AgentDatabase agent(path, "INSERT INTO t VALUES(4)");
                agent.run("PRAGMA wal_checkpoint");
                return 0;
              }),
              0);
    EXPECT_FALSE(database.rows("SELECT n FROM t"));
    EXPECT_TRUE(database.wasDisturbed());
  });
  EXPECT_TRUE(whole);
  EXPECT_THAT(seen, ElementsAre(3, 4));
}

// ---- what cannot be read ----

TEST(UsageDatabase, whatIsNoReadableDatabaseStaysClosed) {
  const TemporaryDirectory folder;
  const auto good = folder.write("good.db", "");
  AgentDatabase(good, std::string(threeRows) + "CREATE TABLE u(x);");
  AgentDatabase broken(folder.path() / "schema.db", threeRows);
  broken.run("PRAGMA writable_schema=ON; UPDATE sqlite_master SET sql = 'CREATE TABLE t(((' WHERE name = 't'");
  std::filesystem::create_directory(folder.path() / "folder.db");
  std::filesystem::create_symlink(folder.path() / "gone.db", folder.path() / "dangling.db");
  folder.write("empty.db", "");
  folder.write("empty.db-wal", "what an empty database would lose to an ordinary reader");
  folder.write("text.db", std::string(5000, 'x'));
  folder.write("short.db", "SQLite format 3");
  folder.write("header.db", test::readFile(good).substr(0, 100));
  folder.write("cut.db", test::readFile(good).substr(0, 8192));
  for (const char* name : {"missing.db", "folder.db", "dangling.db", "empty.db", "text.db", "short.db", "header.db",
                           "cut.db", "schema.db"}) {
    SCOPED_TRACE(name);
    const auto before = folderState(folder.path());
    UsageDatabase database(folder.path() / name);
    EXPECT_FALSE(database.isOpen());
    EXPECT_FALSE(database.rows("SELECT 1", [](const UsageRow&) { FAIL(); }));
    EXPECT_THAT(database.columns("t"), IsEmpty());
    EXPECT_FALSE(database.wasDisturbed());
    EXPECT_EQ(folderState(folder.path()), before);
  }
}

TEST(UsageDatabase, lockedDatabaseStaysClosedUntilTheLockIsGone) {
  const TemporaryDirectory folder;
  const auto path = folder.path() / "x.db";
  UsageDatabaseLimits limits;
  limits.busyMilliseconds = 20;
  for (const char* mode : {"", "PRAGMA journal_mode=WAL; PRAGMA locking_mode=EXCLUSIVE;"}) {
    {
      AgentDatabase agent(
          path, std::string(mode) + "CREATE TABLE IF NOT EXISTS t(n); BEGIN EXCLUSIVE; INSERT INTO t VALUES(1)");
      EXPECT_FALSE(UsageDatabase(path, limits).isOpen()) << mode;
      agent.run("COMMIT");
    }
    EXPECT_TRUE(UsageDatabase(path, limits).isOpen()) << mode;
  }
}

TEST(UsageDatabase, damagedPagesFailTheStatementAndNothingElse) {
  const TemporaryDirectory folder;
  const auto path = folder.path() / "x.db";
  AgentDatabase(
      path, std::string(threeRows) +
                "CREATE TABLE large(n); WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 5000)"
                " INSERT INTO large SELECT i FROM c;");
  auto bytes = test::readFile(path);
  std::fill(bytes.end() - 9 * 4096, bytes.end(), '\xFF');
  UsageDatabase damaged(folder.write("damaged.db", bytes));
  EXPECT_THAT(numbers(damaged), ElementsAre(1, 2, 3));
  std::size_t delivered = 0;
  EXPECT_FALSE(damaged.rows("SELECT n FROM large", [&](const UsageRow&) { ++delivered; }));
  EXPECT_LT(delivered, 5000U);
  EXPECT_FALSE(damaged.rows("SELECT n FROM absent"));
  EXPECT_FALSE(damaged.rows("no statement"));
  EXPECT_FALSE(damaged.rows(""));
  EXPECT_TRUE(damaged.rows("SELECT n FROM t"));
}

// ---- values ----

TEST(UsageDatabase, valuesComeByColumnType) {
  const TemporaryDirectory folder;
  for (const char* encoding : {"UTF-8", "UTF-16le"}) {
    SCOPED_TRACE(encoding);
    const auto path = folder.path() / encoding;
    AgentDatabase(path, std::string("PRAGMA encoding='") + encoding + "'; CREATE TABLE t(a, b, c, d, e, f);" +
                            "INSERT INTO t VALUES(9223372036854775807, 0.5, '日志', x'00ff', NULL, x'');");
    UsageDatabase database(path);
    int rows = 0;
    EXPECT_TRUE(database.rows("SELECT *, '' AS g FROM t", [&](const UsageRow& row) {
      ++rows;
      EXPECT_EQ(row.value("a"), UsageValue(std::numeric_limits<std::int64_t>::max()));
      EXPECT_EQ(row.value("b"), UsageValue(0.5));
      EXPECT_EQ(row.value("c"), UsageValue(std::string_view("日志")));
      EXPECT_EQ(row.text("g"), "");
      const auto blob = row.blob("d");
      EXPECT_TRUE(blob && blob->size() == 2 && (*blob)[1] == std::byte{0xFF});
      EXPECT_TRUE(row.blob("f") && row.blob("f")->empty());
      for (const char* absent : {"d", "e", "f", "unknown"}) EXPECT_EQ(row.value(absent), UsageValue()) << absent;
      EXPECT_FALSE(row.text("a") || row.text("d") || row.blob("c") || row.blob("e"));
    }));
    EXPECT_EQ(rows, 1);
  }
}

TEST(UsageDatabase, textThatIsNotUtf8IsRepairedAndEndsAtItsFirstNul) {
  struct Case {
    const char* hex;
    const char* text;
  };
  const std::vector<Case> cases = {
      {"41ff42", "A\uFFFDB"},
      {"e697a5", "\u65E5"},
      {"e697", "\uFFFD"},
      {"c0af", "\uFFFD\uFFFD"},
      {"eda080", "\uFFFD\uFFFD\uFFFD"},
      {"f09f9880", "\U0001F600"},
      {"f09f98", "\uFFFD"},
      {"f4908080", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"e09f80", "\uFFFD\uFFFD\uFFFD"},
      {"61006200", "a"},
      {"80e6976162",
       "\uFFFD\uFFFD"
       "ab"},
      {"00", ""},
  };
  const TemporaryDirectory folder;
  AgentDatabase agent(folder.path() / "x.db", "CREATE TABLE t(a, b)");
  for (const auto& one : cases) {
    agent.run(std::string("INSERT INTO t VALUES(CAST(x'") + one.hex + "' AS TEXT), 'kept')");
  }
  UsageDatabase database(folder.path() / "x.db");
  std::size_t index = 0;
  EXPECT_TRUE(database.rows("SELECT a, b FROM t ORDER BY rowid", [&](const UsageRow& row) {
    const auto a = row.text("a");
    const auto again = row.text("a");
    EXPECT_EQ(row.text("b"), "kept");
    EXPECT_EQ(a, cases[index].text) << cases[index].hex;
    EXPECT_EQ(again, cases[index].text);
    ++index;
  }));
  EXPECT_EQ(index, cases.size());
}

// ---- hostile databases ----

TEST(UsageDatabase, valueAboveTheLimitFailsOnlyWhatReadsIt) {
  const TemporaryDirectory folder;
  AgentDatabase(folder.path() / "x.db",
                "CREATE TABLE t(n, b); INSERT INTO t VALUES(1, zeroblob(200000)), (2, 'short');");
  UsageDatabaseLimits limits;
  limits.maximumValueBytes = 100'000;
  UsageDatabase database(folder.path() / "x.db", limits);
  EXPECT_THAT(numbers(database), ElementsAre(1, 2));
  EXPECT_TRUE(database.rows("SELECT CASE WHEN length(b) <= 1000 THEN b END AS b FROM t"));
  EXPECT_FALSE(database.rows("SELECT b FROM t"));
  EXPECT_FALSE(database.rows("SELECT hex(zeroblob(90000))"));
}

TEST(UsageDatabase, statementThatDoesNotEndIsInterrupted) {
  const TemporaryDirectory folder;
  AgentDatabase(folder.path() / "x.db", threeRows);
  const RacingClock clock;
  UsageDatabaseLimits limits;
  limits.clock = &clock;
  limits.maximumSeconds = 1000;
  UsageDatabase database(folder.path() / "x.db", limits);
  EXPECT_THAT(numbers(database), ElementsAre(1, 2, 3));
  EXPECT_FALSE(database.rows("WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c) SELECT count(*) FROM c"));
  EXPECT_FALSE(database.rows("SELECT n FROM t")) << "the time is the connection's";
}

TEST(UsageDatabase, codeInTheSchemaDoesNotRun) {
  const TemporaryDirectory folder;
  AgentDatabase(
      folder.path() / "x.db",
      std::string(threeRows) +
          "CREATE VIEW endless AS WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c) SELECT n FROM c;"
          "CREATE VIRTUAL TABLE words USING fts5(n); INSERT INTO words VALUES(1);"
          "CREATE TABLE large(n, x AS (hex(zeroblob(100000000))));"
          "INSERT INTO large(n) VALUES(1);");
  UsageDatabase database(folder.path() / "x.db");
  EXPECT_FALSE(database.rows("SELECT n FROM endless"));
  EXPECT_FALSE(database.rows("SELECT n FROM words"));
  EXPECT_FALSE(database.rows("SELECT x FROM large"));
  EXPECT_FALSE(database.rows("INSERT INTO t VALUES(4)"));
  EXPECT_FALSE(database.rows("ATTACH ':memory:' AS other"));
  EXPECT_THAT(database.columns("words"), IsEmpty());
  EXPECT_THAT(database.columns("absent"), IsEmpty());
  EXPECT_THAT(numbers(database), ElementsAre(1, 2, 3));
}

}  // namespace
}  // namespace quillmeter
