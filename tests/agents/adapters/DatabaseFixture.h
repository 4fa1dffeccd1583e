#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// The agent's side: a connection that writes, as SQLite does it by default.
class AgentDatabase {
 public:
  explicit AgentDatabase(const std::filesystem::path& path, const std::string& sql = "") {
    if (sqlite3_open(path.c_str(), &handle_) != SQLITE_OK) throw std::runtime_error("cannot open " + path.string());
    sqlite3_busy_timeout(handle_, 10'000);
    run(sql);
  }
  AgentDatabase(const AgentDatabase&) = delete;
  AgentDatabase& operator=(const AgentDatabase&) = delete;
  ~AgentDatabase() { sqlite3_close(handle_); }

  void run(const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return;
    const std::string text = message != nullptr ? message : "?";
    sqlite3_free(message);
    throw std::runtime_error(text + ": " + sql.substr(0, 200));
  }

  std::int64_t integer(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr);
    const bool found = sqlite3_step(statement) == SQLITE_ROW;
    const std::int64_t value = found ? sqlite3_column_int64(statement, 0) : -1;
    sqlite3_finalize(statement);
    return value;
  }

 private:
  sqlite3* handle_ = nullptr;
};

inline std::size_t contentHash(const std::filesystem::path& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return std::hash<std::string>()(std::move(content).str());
}

// Every entry of a folder with content, size and modification date: equal before and after when nothing was touched.
// (Root's SQLite gives a log the owner of its database, so the date of the last change of status says nothing there.)
inline std::map<std::string, std::string> folderState(const std::filesystem::path& folder) {
  std::map<std::string, std::string> state;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    struct stat status {};
    lstat(entry.path().c_str(), &status);
    const auto dates = std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec) + " " +
                       std::to_string(status.st_size) + " ";
    state[entry.path().filename()] = dates + (entry.is_regular_file() ? std::to_string(contentHash(entry.path())) : "");
  }
  struct stat status {};
  lstat(folder.c_str(), &status);
  state["."] = std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec);
  return state;
}

// What a process that is killed now would leave beside `path`, in a folder of its own; gives the database's new path.
inline std::filesystem::path asLeftByKill(const std::filesystem::path& path, const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
    auto file = path;
    file += suffix;
    if (std::filesystem::exists(file)) std::filesystem::copy_file(file, folder / file.filename());
  }
  return folder / path.filename();
}

// Runs `body` in a child process and gives its exit code; -1 when it was ended by a signal.
inline int inChildProcess(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) {
    int code = 125;
    try {
      code = body();
    } catch (...) {
    }
    _exit(code);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace quillmeter::test
