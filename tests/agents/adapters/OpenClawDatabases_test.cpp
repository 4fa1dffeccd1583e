#include <random>

#include "agents/adapters/OpenClawFixture.h"

namespace quillmeter {
namespace {

using namespace test;
namespace fs = std::filesystem;

std::string noise(std::size_t bytes) {
  std::mt19937 random(11);
  std::string text(bytes, '\0');
  for (char& c : text) c = static_cast<char>(random());
  return text;
}

// An answer padded by white space to `bytes`.
std::string paddedAnswer(const std::string& responseID, std::int64_t tokens, std::size_t bytes) {
  std::string line = answer(responseID, tokens);
  line.resize(bytes, ' ');
  return line;
}

class OpenClawDatabaseTest : public OpenClawTest {
 protected:
  // The tables as the agent makes them.
  SqliteWriter makeDatabase(const std::string& name = "agent/openclaw-agent.sqlite") {
    SqliteWriter writer(folder.path() / "main" / name);
    writer.run("PRAGMA journal_mode = WAL");
    writer.run(
        "CREATE TABLE transcript_events (session_id TEXT NOT NULL, seq INTEGER NOT NULL, event_json TEXT, "
        "created_at INTEGER NOT NULL, event_zstd BLOB, event_utf8_bytes INTEGER, navigation_json TEXT, "
        "PRIMARY KEY (session_id, seq)) STRICT");
    writer.run(
        "CREATE TABLE session_transcript_archives (session_id TEXT NOT NULL, generation TEXT, reason TEXT, "
        "encoding TEXT, archive_blob BLOB, archive_sha256 TEXT, archive_name TEXT, created_at INTEGER) STRICT");
    writer.run(
        "CREATE TABLE session_transcript_cold_archives (session_id TEXT NOT NULL, generation TEXT, "
        "archive_name TEXT, archive_sha256 TEXT, event_count INTEGER, raw_bytes INTEGER, archive_bytes INTEGER, "
        "last_seq INTEGER, archived_at INTEGER, storage TEXT, archive_blob BLOB) STRICT");
    return writer;
  }

  static void addEvent(SqliteWriter& writer, const std::string& session, std::int64_t seq, SqlValue json,
                       SqlValue zstd = nullptr) {
    writer.run(
        "INSERT INTO transcript_events (session_id, seq, event_json, created_at, event_zstd) VALUES (?, ?, ?, "
        "1600000000000, ?)",
        {session, seq, std::move(json), std::move(zstd)});
  }
  static void addArchive(SqliteWriter& writer, const std::string& session, SqlValue encoding, SqlValue blob) {
    writer.run(
        "INSERT INTO session_transcript_archives (session_id, encoding, archive_blob, created_at) VALUES (?, ?, ?, 1)",
        {session, std::move(encoding), std::move(blob)});
  }
  static void addCold(SqliteWriter& writer, const std::string& session, SqlValue storage, SqlValue name,
                      SqlValue digest, SqlValue blob = nullptr) {
    writer.run(
        "INSERT INTO session_transcript_cold_archives (session_id, storage, archive_name, archive_sha256, "
        "archive_blob) "
        "VALUES (?, ?, ?, ?, ?)",
        {session, std::move(storage), std::move(name), std::move(digest), std::move(blob)});
  }
  // A cold file in `place` (below the agent), named by its digest; gives the digest.
  std::string writeCold(const std::string& place, const std::string& bytes) {
    const std::string digest = hexDigest(bytes);
    folder.write("main/" + place + "/" + digest + ".jsonl.zst", bytes);
    return digest;
  }
};

TEST_F(OpenClawDatabaseTest, eventsAreReadPlainAndCompressedWithTheRowsDateAsFallback) {
  auto writer = makeDatabase();
  addEvent(writer, "a", 1, answer("1", 1));
  addEvent(writer, "a", 2, nullptr, Blob{zstdFrame(answer("2", 20, ""), {.level = 1})});
  addEvent(writer, "a", 3, R"({"type":"reset"})");
  addEvent(writer, "a", 4, nullptr);
  addEvent(writer, "b", 1, answer("", 300, ""));
  const auto sessions = adapter.sessions(folder.path(), Date::distantPast());
  ASSERT_EQ(sessions.size(), 2U);
  EXPECT_EQ(sessions[0].metrics().totalTokens, 21);
  EXPECT_EQ(sessions[0].events[1].date, Date::fromWholeSeconds(1'600'000'000));
  EXPECT_EQ(sessions[1].events[0].id, "anonymous:1600000000.0:300:0:0:0:300:1");
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

TEST_F(OpenClawDatabaseTest, anOversizedEventIsSkippedSilentlyAndABrokenOneIsCounted) {
  auto writer = makeDatabase();
  addEvent(writer, "text", 1, paddedAnswer("1", 1, 16'777'216));
  addEvent(writer, "text", 2, paddedAnswer("2", 20, 16'777'217));
  addEvent(writer, "zstd", 1, nullptr, Blob{zstdFrame(paddedAnswer("1", 1, 4'194'304))});
  addEvent(writer, "zstd", 2, nullptr, Blob{zstdFrame(paddedAnswer("2", 20, 4'194'305))});
  const std::string head = answer("3", 300);
  addEvent(writer, "stored", 1, nullptr, Blob{zstdFrame(head) + noise(4'194'305)});
  EXPECT_EQ(scan(), (Totals{{"text", 1}, {"zstd", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);

  addEvent(writer, "broken", 1, nullptr, Blob{zstdFrame(head).substr(0, 20)});
  addEvent(writer, "broken", 2, nullptr, Blob{"no zstd"});
  addEvent(writer, "broken", 3, answer("4", 4000));
  EXPECT_EQ(scan(), (Totals{{"broken", 4000}, {"text", 1}, {"zstd", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 2);
}

TEST_F(OpenClawDatabaseTest, archivesAreReadCompressedAndPlainAndWhatCannotBeReadIsCounted) {
  auto writer = makeDatabase();
  const std::string text = answer("1", 1) + "\n" + answer("2", 2);
  addArchive(writer, "zstd", "zstd", Blob{zstdFrame(text)});
  addArchive(writer, "identity", "identity", Blob{text});
  addArchive(writer, "frames", "zstd", Blob{zstdFrame(text.substr(0, 30)) + zstdFrame(text.substr(30))});
  EXPECT_EQ(scan(), (Totals{{"frames", 3}, {"identity", 3}, {"zstd", 3}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);

  addArchive(writer, "null", "zstd", nullptr);
  addArchive(writer, "unknown", "brotli", Blob{text});
  addArchive(writer, "truncated", "zstd", Blob{zstdFrame(text).substr(0, 40)});
  addArchive(writer, "invalid", "zstd", Blob{text});
  addArchive(writer, "trailing", "zstd", Blob{zstdFrame(text) + "x"});
  EXPECT_EQ(scan(), (Totals{{"frames", 3}, {"identity", 3}, {"zstd", 3}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 5);
}

TEST_F(OpenClawDatabaseTest, anArchiveBeyondItsLimitIsUnreadable) {
  auto writer = makeDatabase();
  const std::string line = answer("1", 1) + "\n";
  constexpr std::uint64_t limit = 67'108'864;
  addArchive(writer, "exact", "zstd", Blob{zstdFrame(line) + zstdBomb(limit - line.size())});
  addArchive(writer, "bomb", "zstd", Blob{zstdFrame(line) + zstdBomb(limit - line.size() + 1)});
  EXPECT_EQ(scan(), (Totals{{"exact", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 1);

  OpenClawLimits limits;
  limits.archiveBytes = 1000;
  OpenClawUsageAdapter reader(opener, sha256, clock, limits);
  addArchive(writer, "stored", "identity", Blob{paddedAnswer("1", 1, 1000)});
  addArchive(writer, "beyond", "identity", Blob{paddedAnswer("1", 1, 1001)});
  addCold(writer, "cold", "sqlite", nullptr, nullptr, Blob{coldEvent(answer("1", 1)) + std::string(1000, ' ')});
  EXPECT_EQ(scanWith(reader), (Totals{{"stored", 1}}));
  EXPECT_EQ(reader.unreadableSourceCount(), 4);
}

TEST_F(OpenClawDatabaseTest, coldArchivesAreReadFromRowsAndFilesInBothForms) {
  auto writer = makeDatabase();
  const std::string nested =
      coldHeader + coldEvent(answer("1", 1)) + coldEvent(answer("2", 2, "")) + R"({"kind":"fts","event_json":"x"})";
  addCold(writer, "row", "sqlite", "ignored", "not checked", Blob{zstdFrame(nested)});
  addCold(writer, "flat", "sqlite", nullptr, nullptr, Blob{zstdFrame(coldHeader + coldEvent(answer("1", 10), false))});
  const std::string first = writeCold("sessions/cold", zstdFrame(nested));
  addCold(writer, "file", "file", first + ".jsonl.zst", first);
  const std::string second = writeCold("cold", zstdFrame(coldHeader + coldEvent(answer("1", 100))));
  addCold(writer, "older", "file", second + ".jsonl.zst", second);
  EXPECT_EQ(scan(), (Totals{{"file", 3}, {"flat", 10}, {"older", 100}, {"row", 3}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
  opener.opened.clear();
  EXPECT_EQ(scan(), (Totals{{"file", 3}, {"flat", 10}, {"older", 100}, {"row", 3}}));
  EXPECT_TRUE(opener.opened.empty());
}

TEST_F(OpenClawDatabaseTest, aColdFileThatIsNotWhatItsRowSaysIsUnreadable) {
  auto writer = makeDatabase();
  const std::string bytes = zstdFrame(coldHeader + coldEvent(answer("1", 1)));
  const std::string digest = writeCold("sessions/cold", bytes);
  const std::string name = digest + ".jsonl.zst";
  const std::string missing(64, 'b');
  const std::string linked(64, 'c');
  folder.write("outside/" + name, bytes);
  fs::create_symlink(folder.path() / "outside" / name, folder.path() / "main/sessions/cold" / (linked + ".jsonl.zst"));
  fs::create_directory(folder.path() / "main/sessions/cold" / (std::string(64, 'd') + ".jsonl.zst"));

  addCold(writer, "mismatch", "file", name, std::string(64, '0'));
  addCold(writer, "upper case", "file", name, [&] {
    std::string upper = digest;
    for (char& c : upper) c = static_cast<char>(std::toupper(c));
    return upper;
  }());
  addCold(writer, "no digest", "file", name, nullptr);
  addCold(writer, "escape", "file", "../../../outside/" + name, digest);
  addCold(writer, "absolute", "file", (folder.path() / "outside" / name).native(), digest);
  addCold(writer, "link", "file", linked + ".jsonl.zst", digest);
  addCold(writer, "folder", "file", std::string(64, 'd') + ".jsonl.zst", digest);
  addCold(writer, "missing", "file", missing + ".jsonl.zst", missing);
  addCold(writer, "no name", "file", nullptr, digest);
  addCold(writer, "no blob", "sqlite", nullptr, digest);
  addCold(writer, "good", "file", name, digest);
  EXPECT_EQ(scan(), (Totals{{"good", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 10);
}

TEST_F(OpenClawDatabaseTest, aDeletedSessionThatIsThereAsRowAndAsFileCountsOnce) {
  auto writer = makeDatabase();
  const std::string text = answer("1", 1) + "\n" + answer("", 20) + "\n" + answer("", 20) + "\n";
  addArchive(writer, "gone", "zstd", Blob{zstdFrame(text)});
  writeSession("gone.jsonl.deleted.2026-09-06T01-02-03.004Z.0123456789abcdef0123456789abcdef.zst", zstdFrame(text));
  addEvent(writer, "gone", 1, answer("", 20));
  addCold(writer, "gone", "sqlite", nullptr, nullptr, Blob{zstdFrame(coldEvent(answer("1", 1)))});
  addEvent(writer, "other", 1, answer("1", 1));
  EXPECT_EQ(scan(), (Totals{{"gone", 41}, {"other", 1}}));
}

TEST_F(OpenClawDatabaseTest, theFirstCopyOfAResponseStaysInTheOrderOfTheCandidates) {
  const char* names[] = {"agent/openclaw-agent.sqlite", "sessions/openclaw-agent.sqlite", "sessions/sessions.sqlite",
                         "sessions/sessions.db"};
  std::int64_t tokens = 1;
  for (const char* name : names) {
    auto writer = makeDatabase(name);
    addEvent(writer, "s", 1, answer("shared", tokens));
    addEvent(writer, "s", 2, answer("own" + std::to_string(tokens), tokens));
    tokens *= 10;
  }
  EXPECT_EQ(scan(), (Totals{{"s", 1 + 1111}}));
  writeSession("s.jsonl", answer("shared", 50'000));
  EXPECT_EQ(scan(), (Totals{{"s", 50'000 + 1111}}));
}

TEST_F(OpenClawDatabaseTest, statementsNameOnlyTheColumnsThatExist) {
  SqliteWriter writer(folder.path() / "main/sessions/sessions.db");
  writer.run("CREATE TABLE transcript_events (session_id, seq, created_at, event_json)");
  writer.run("INSERT INTO transcript_events VALUES ('old', 1, 1600000000, ?), (42, 1, 1, ?), (NULL, 1, 1, ?)",
             {answer("1", 1, ""), answer("2", 2), answer("3", 3)});
  writer.run("CREATE TABLE session_transcript_archives (session_id, archive_blob)");
  writer.run("INSERT INTO session_transcript_archives VALUES ('archived', ?)", {Blob{zstdFrame(answer("1", 10))}});
  writer.run("CREATE TABLE session_transcript_cold_archives (session_id, encoding, archive_blob)");
  writer.run("INSERT INTO session_transcript_cold_archives VALUES ('cold', 'identity', ?)",
             {coldEvent(answer("1", 100))});
  EXPECT_EQ(scan(), (Totals{{"archived", 10}, {"cold", 100}, {"old", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

TEST_F(OpenClawDatabaseTest, whatIsNoDatabaseOrHasAForeignSchemaCountsAsUnreadable) {
  folder.write("main/agent/openclaw-agent.sqlite",
               "this is no database, however long the text may be, and never was one");
  fs::create_directories(folder.path() / "main/sessions/sessions.sqlite");
  SqliteWriter writer(folder.path() / "main/sessions/sessions.db");
  writer.run("CREATE TABLE transcript_events (something)");
  writeSession("good.jsonl", answer("1", 1));
  EXPECT_EQ(scan(), (Totals{{"good", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 3);
  fs::remove_all(folder.path() / "main/agent");
  fs::remove_all(folder.path() / "main/sessions/sessions.sqlite");
  writer.run("DROP TABLE transcript_events");
  EXPECT_EQ(scan(), (Totals{{"good", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

TEST_F(OpenClawDatabaseTest, aChangeIsSeenWhereverSqliteKeepsIt) {
  auto writer = makeDatabase();
  addEvent(writer, "s", 1, answer("1", 1));
  EXPECT_EQ(scan(), (Totals{{"s", 1}}));
  addEvent(writer, "s", 2, answer("2", 10));  // in the write-ahead log alone
  EXPECT_EQ(scan(), (Totals{{"s", 11}}));
  writer.run("PRAGMA wal_checkpoint(TRUNCATE)");
  EXPECT_EQ(scan(), (Totals{{"s", 11}}));
  addEvent(writer, "s", 3, answer("3", 100));
  EXPECT_EQ(scan(), (Totals{{"s", 111}}));
  writer.run("DELETE FROM transcript_events");
  EXPECT_EQ(scan(), (Totals{}));
}

TEST_F(OpenClawDatabaseTest, aChangeOfEqualSizeWithinTheSameTickAsTheLastScanIsSeen) {
  clock.instant = SystemClock().now();  // the file's date is too young to be relied on
  auto writer = makeDatabase();
  writer.run("PRAGMA journal_mode = DELETE");
  writer.run("PRAGMA synchronous = OFF");
  addEvent(writer, "s", 1, answer("1", 1));
  for (int i = 0; i < 100; ++i) {
    const std::int64_t tokens = 1 + i % 9;
    writer.run("UPDATE transcript_events SET event_json = ?", {answer("1", tokens)});
    ASSERT_EQ(scan(), (Totals{{"s", tokens}}));
  }
}

TEST_F(OpenClawDatabaseTest, anUnchangedDatabaseIsNotReadAgain) {
  auto writer = makeDatabase();
  writer.run("PRAGMA journal_mode = DELETE");
  addEvent(writer, "s", 1, answer("1", 1));
  EXPECT_EQ(scan(), (Totals{{"s", 1}}));
  writer.run("BEGIN EXCLUSIVE");  // who reads now has to wait in vain
  EXPECT_EQ(scan(), (Totals{{"s", 1}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
  adapter.clearCache();
  EXPECT_EQ(scan(), (Totals{}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 1);
  writer.run("ROLLBACK");
  EXPECT_EQ(scan(), (Totals{{"s", 1}}));
}

TEST_F(OpenClawDatabaseTest, aColdFileTakenBackWhileItIsLookedForIsFoundInTheDatabase) {
  auto writer = makeDatabase();
  const std::string digest = writeCold("sessions/cold", zstdFrame(coldEvent(answer("1", 7))));
  addCold(writer, "s", "file", digest + ".jsonl.zst", digest);
  opener.beforeOpening = [&](const fs::path& path) {
    if (!fs::exists(path)) return;
    writer.run("BEGIN");
    writer.run("DELETE FROM session_transcript_cold_archives");
    addEvent(writer, "s", 1, answer("1", 7));
    writer.run("COMMIT");
    fs::remove(path);
  };
  EXPECT_EQ(scan(), (Totals{{"s", 7}}));
  EXPECT_EQ(adapter.unreadableSourceCount(), 0);
}

}  // namespace
}  // namespace quillmeter
