// One message as OpenCode stores it, once in the data column of its database and once as a message file. Whatever it
// is, both readers give at most one event, whose figures add up, and the database stays readable.
#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

#include "agents/adapters/OpenCodeUsageAdapter.h"
#include "support/TemporaryDirectory.h"

namespace {

using namespace quillmeter;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

void check(AgentUsageAdapter& adapter, const std::filesystem::path& root) {
  const auto sessions = adapter.sessions(root, Date::distantPast());
  require(sessions.size() <= 1, "one message, one session");
  for (const auto& session : sessions) {
    require(session.events.size() == 1, "one message, one event");
    const auto& metrics = session.events[0].metrics;
    require(
        metrics.totalTokens >= 1 && metrics.inputTokens >= 0 && metrics.outputTokens >= 0 && metrics.cachedTokens >= 0,
        "no figure is negative, the total counts something");
    require(metrics.totalTokens == metrics.inputTokens + metrics.outputTokens + metrics.cachedTokens,
            "the figures add up");
  }
  require(adapter.unreadableSourceCount() == 0, "a strange message is skipped, the source is not unreadable");
}

// A database with one message, whose data each input replaces.
class MessageDatabase {
 public:
  explicit MessageDatabase(const std::filesystem::path& path) {
    require(sqlite3_open(path.c_str(), &handle_) == SQLITE_OK, "open");
    require(sqlite3_exec(
                handle_,
                "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
                "CREATE TABLE message(id TEXT, session_id TEXT, time_created INTEGER, time_updated INTEGER, data TEXT);"
                "INSERT INTO message VALUES('m', 's', 1790000000000, 1790000000000, '')",
                nullptr, nullptr, nullptr) == SQLITE_OK,
            "create");
    sqlite3_prepare_v2(handle_, "UPDATE message SET data = ?", -1, &update_, nullptr);
  }

  void store(std::string_view data) {
    sqlite3_bind_text(update_, 1, data.data(), static_cast<int>(data.size()), SQLITE_STATIC);
    require(sqlite3_step(update_) == SQLITE_DONE, "store");
    sqlite3_reset(update_);
  }

 private:
  sqlite3* handle_ = nullptr;  // both live as long as the process
  sqlite3_stmt* update_ = nullptr;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::TemporaryDirectory databases;
  static const test::TemporaryDirectory files;
  static MessageDatabase database(databases.path() / "opencode.db");
  static SystemFileOpener opener;
  static OpenCodeUsageAdapter adapter(opener);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  database.store(text);
  check(adapter, databases.path());
  files.write("storage/message/ses/msg.json", text);
  check(adapter, files.path());
  return 0;
}
