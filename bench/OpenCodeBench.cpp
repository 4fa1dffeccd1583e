// What a scan of a large OpenCode database costs (500 MB, 200,000 messages of which half are answers, every session
// touched), beside the same statement stepped through the bare C interface. The scan should stay below 1.5 times that.
// The bases are not part of any timing. QUILLMETER_BENCH_DATABASE names a folder that keeps them between runs.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "agents/adapters/OpenCodeUsageAdapter.h"
#include "support/TemporaryDirectory.h"

namespace {

using namespace quillmeter;

constexpr int messageCount = 200'000;
constexpr std::int64_t firstMilliseconds = 1'790'000'000'000;

constexpr const char* schema =
    "PRAGMA synchronous=OFF;"
    "CREATE TABLE message(id TEXT PRIMARY KEY, session_id TEXT NOT NULL, time_created INTEGER NOT NULL,"
    " time_updated INTEGER NOT NULL, data TEXT NOT NULL);"
    "CREATE INDEX message_session_idx ON message(session_id); BEGIN;";

// The same statement as the adapter's, for everything since the first message.
constexpr const char* statement =
    "SELECT id, session_id, json_extract(data, '$.tokens') AS tokens,\n"
    "       COALESCE(json_extract(data, '$.time.completed'), json_extract(data, '$.time.created'), time_created) AS "
    "timestamp\n"
    "FROM message\n"
    "WHERE json_valid(data) AND json_extract(data, '$.role') = 'assistant'\n"
    "  AND session_id IN (SELECT session_id FROM message WHERE time_updated >= 1790000000000)";

std::string messageData(int number) {
  const std::string created = std::to_string(firstMilliseconds + number * 1000);
  const bool answer = number % 2 == 1;
  std::string data = R"({"role":")" + std::string(answer ? "assistant" : "user") + R"(","time":{"created":)" + created;
  if (answer) {
    data += R"(,"completed":)" + created + R"(},"parentID":"msg_0000","modelID":"m","providerID":"p","cost":0.0123,)" +
            R"("path":{"cwd":"/home/user/project","root":"/"},"tokens":{"input":)" +
            std::to_string(100 + number % 1000) +
            R"(,"output":250,"reasoning":17,"cache":{"write":0,"read":12345}},"finish":"stop")";
  } else {
    data += R"(},"agent":"build")";
  }
  data += R"(,"summary":{"title":"Work","diffs":[)";
  for (int i = 0; data.size() < 1300 + static_cast<std::size_t>(number) % 9 * 130; ++i) {
    if (i > 0) data += ',';
    data += R"({"file":"src/module/File)" + std::to_string(i) +
            R"(.cpp","additions":12,"deletions":3,"status":"modified"})";
  }
  return data + "]}}";
}

void execute(sqlite3* database, const char* sql) {
  if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
}

void buildDatabase(const std::filesystem::path& path) {
  sqlite3* database = nullptr;
  if (sqlite3_open(path.c_str(), &database) != SQLITE_OK) std::abort();
  execute(database, schema);
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(database, "INSERT INTO message VALUES(?, ?, ?, ?, ?)", -1, &insert, nullptr);
  for (int i = 0; i < messageCount; ++i) {
    const std::string id = "msg_" + std::to_string(10'000'000 + i) + "001kpduwfmOLtche";
    const std::string session = "ses_" + std::to_string(10'000 + i / 100) + "ffeTUARk47jS9cN";
    const std::string data = messageData(i);
    sqlite3_bind_text(insert, 1, id.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 2, session.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int64(insert, 3, firstMilliseconds + i * 1000);
    sqlite3_bind_int64(insert, 4, firstMilliseconds + i * 1000);
    sqlite3_bind_text(insert, 5, data.c_str(), -1, SQLITE_TRANSIENT);
    if (sqlite3_step(insert) != SQLITE_DONE) std::abort();
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  execute(database, "COMMIT");
  sqlite3_close(database);
}

// The folder with the database, built once.
const std::filesystem::path& root() {
  static const test::TemporaryDirectory temporary;
  static const std::filesystem::path folder = [] {
    const char* kept = std::getenv("QUILLMETER_BENCH_DATABASE");
    std::filesystem::path chosen = kept != nullptr ? std::filesystem::path(kept) : temporary.path();
    if (!std::filesystem::exists(chosen / "opencode.db")) buildDatabase(chosen / "opencode.db");
    return chosen;
  }();
  return folder;
}

void bareStatement(benchmark::State& state) {
  const std::string path = root() / "opencode.db";
  std::size_t rows = 0;
  for (auto _ : state) {
    sqlite3* database = nullptr;
    sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(database, statement, -1, &prepared, nullptr);
    for (rows = 0; sqlite3_step(prepared) == SQLITE_ROW; ++rows) {
      for (int column = 0; column < 4; ++column) benchmark::DoNotOptimize(sqlite3_column_text(prepared, column));
    }
    sqlite3_finalize(prepared);
    sqlite3_close(database);
  }
  state.counters["rows"] = static_cast<double>(rows);
  state.counters["MB"] = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
}

void adapterScan(benchmark::State& state) {
  root();
  SystemFileOpener opener;
  OpenCodeUsageAdapter adapter(opener);
  std::size_t events = 0;
  for (auto _ : state) {
    events = 0;
    for (const auto& session : adapter.sessions(root(), Date{firstMilliseconds * 1000}))
      events += session.events.size();
  }
  if (events != messageCount / 2 || adapter.unreadableSourceCount() != 0)
    state.SkipWithError("not everything was read");
  state.counters["events"] = static_cast<double>(events);
}

BENCHMARK(bareStatement)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(adapterScan)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly();

}  // namespace

BENCHMARK_MAIN();
