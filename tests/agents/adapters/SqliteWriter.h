#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace quillmeter::test {

struct Blob {
  std::string bytes;
};
using SqlValue = std::variant<std::nullptr_t, std::int64_t, double, std::string, Blob>;

// The agent's side of a database: makes it and writes to it. Throws when SQLite refuses.
class SqliteWriter {
 public:
  explicit SqliteWriter(const std::filesystem::path& path) {
    std::filesystem::create_directories(path.parent_path());
    sqlite3* handle = nullptr;
    const int code = sqlite3_open(path.c_str(), &handle);
    database_.reset(handle);
    if (code != SQLITE_OK) throw std::runtime_error("cannot open " + path.string());
    sqlite3_busy_timeout(handle, 10'000);
  }

  // One statement with its parameters.
  void run(const std::string& sql, const std::vector<SqlValue>& values = {}) {
    sqlite3_stmt* raw = nullptr;
    check(sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &raw, nullptr));
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(raw, &sqlite3_finalize);
    for (std::size_t i = 0; i < values.size(); ++i) bind(raw, static_cast<int>(i + 1), values[i]);
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW) code = sqlite3_step(raw);
    if (code != SQLITE_DONE) check(code);
  }

  // The first column of every row, as text.
  std::vector<std::string> texts(const std::string& sql) {
    sqlite3_stmt* raw = nullptr;
    check(sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &raw, nullptr));
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(raw, &sqlite3_finalize);
    std::vector<std::string> values;
    while (sqlite3_step(raw) == SQLITE_ROW) {
      const unsigned char* text = sqlite3_column_text(raw, 0);
      values.emplace_back(text == nullptr ? "" : reinterpret_cast<const char*>(text));
    }
    return values;
  }
  // 0 when there is none.
  std::int64_t integer(const std::string& sql) {
    const auto values = texts(sql);
    return values.empty() || values[0].empty() ? 0 : std::stoll(values[0]);
  }

 private:
  void bind(sqlite3_stmt* statement, int index, const SqlValue& value) {
    if (const auto* integer = std::get_if<std::int64_t>(&value)) {
      check(sqlite3_bind_int64(statement, index, *integer));
    } else if (const auto* number = std::get_if<double>(&value)) {
      check(sqlite3_bind_double(statement, index, *number));
    } else if (const auto* text = std::get_if<std::string>(&value)) {
      check(sqlite3_bind_text64(statement, index, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    } else if (const auto* blob = std::get_if<Blob>(&value)) {
      check(sqlite3_bind_blob64(statement, index, blob->bytes.data(), blob->bytes.size(), SQLITE_TRANSIENT));
    } else {
      check(sqlite3_bind_null(statement, index));
    }
  }

  void check(int code) {
    if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_.get()));
  }

  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database_{nullptr, &sqlite3_close};
};

}  // namespace quillmeter::test
