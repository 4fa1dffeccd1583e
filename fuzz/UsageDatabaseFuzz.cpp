// A database whose bytes are damaged. The target builds good ones itself; an input is one byte that chooses what lies
// beside the file (its two lowest bits: nothing in rollback mode, nothing in write-ahead mode, log and index, log
// alone) and edits of five bytes: which file, a 24-bit offset, the new value. Whatever comes out, the adapters return
// and leave the folder as they found it.
#include <sqlite3.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "agents/adapters/HermesUsageAdapter.h"
#include "agents/adapters/OpenCodeUsageAdapter.h"
#include "agents/adapters/UsageDatabase.h"
#include "support/TemporaryDirectory.h"

namespace {

using namespace quillmeter;

constexpr std::array<const char*, 3> suffixes = {"", "-wal", "-shm"};
using Bytes = std::array<std::string, suffixes.size()>;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

constexpr const char* content =
    "CREATE TABLE message(id TEXT PRIMARY KEY, session_id TEXT, time_created INTEGER, time_updated INTEGER, data TEXT);"
    "CREATE TABLE sessions(id TEXT, started_at REAL, ended_at REAL, input_tokens INTEGER, output_tokens INTEGER);"
    "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 30) INSERT INTO message "
    "SELECT 'm' || i, 's' || (i % 3), 1790000000000, 1790000000000, json_object('role', 'assistant', 'tokens',"
    " json_object('input', i), 'filling', hex(zeroblob(i * 8))) FROM c;"
    "INSERT INTO sessions SELECT id, 1790000000, NULL, 5, 6 FROM message;";

// What a writer leaves whose last rows are in the log only.
Bytes buildDatabase(bool writeAhead) {
  const test::TemporaryDirectory folder;
  const std::string path = folder.path() / "x.db";
  sqlite3* database = nullptr;
  sqlite3_open(path.c_str(), &database);
  const std::string mode = writeAhead ? "PRAGMA page_size=512; PRAGMA journal_mode=WAL;" : "PRAGMA page_size=512;";
  const std::string after =
      writeAhead ? "PRAGMA wal_checkpoint; UPDATE sessions SET input_tokens = 7; DELETE FROM message WHERE id = 'm1'"
                 : "";
  require(sqlite3_exec(database, (mode + content + after).c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, "build");
  Bytes bytes;
  for (std::size_t i = 0; i < suffixes.size(); ++i) bytes[i] = test::readFile(path + suffixes[i]);
  sqlite3_close(database);
  return bytes;
}

void damage(Bytes& bytes, std::string_view edits) {
  for (; edits.size() >= 5; edits.remove_prefix(5)) {
    const auto at = [&](std::size_t i) { return static_cast<std::size_t>(static_cast<unsigned char>(edits[i])); };
    std::string& file = bytes[at(0) % bytes.size()];
    if (!file.empty()) file[(at(1) << 16U | at(2) << 8U | at(3)) % file.size()] = edits[4];
  }
}

std::size_t entriesOf(const std::filesystem::path& folder) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) count += entry.exists() ? 1U : 0U;
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Bytes rollback = buildDatabase(false);
  static const Bytes writeAhead = buildDatabase(true);
  static const test::TemporaryDirectory folder;
  static SystemFileOpener opener;
  if (size == 0) return 0;
  const unsigned state = data[0] & 3U;
  Bytes bytes = state == 0 ? rollback : writeAhead;
  damage(bytes, {reinterpret_cast<const char*>(data) + 1, size - 1});
  const std::array<bool, suffixes.size()> present = {true, state >= 2, state == 2};
  std::size_t files = 0;
  for (const char* name : {"opencode.db", "state.db"}) {
    for (std::size_t i = 0; i < suffixes.size(); ++i) {
      const auto path = folder.path() / (name + std::string(suffixes[i]));
      std::filesystem::remove(path);
      if (present[i]) folder.write(path.filename(), bytes[i]);
      files += present[i] ? 1 : 0;
    }
  }
  OpenCodeUsageAdapter openCode(opener);
  HermesUsageAdapter hermes;
  for (AgentUsageAdapter* adapter : std::initializer_list<AgentUsageAdapter*>{&openCode, &hermes}) {
    adapter->sessions(folder.path(), Date::distantPast());
  }
  require(entriesOf(folder.path()) == files, "no file more, no file less");
  for (std::size_t i = 0; i < suffixes.size(); ++i) {
    if (present[i])
      require(test::readFile(folder.path() / (std::string("opencode.db") + suffixes[i])) == bytes[i],
              "no file changed");
  }
  return 0;
}
