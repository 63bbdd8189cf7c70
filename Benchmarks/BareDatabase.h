#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace quellin::benchmarks {

/// Just enough of SQLite to show what it alone costs.
class BareDatabase {
 public:
  explicit BareDatabase(const std::filesystem::path& path) { sqlite3_open(path.c_str(), &connection_); }
  ~BareDatabase() { sqlite3_close_v2(connection_); }
  BareDatabase(const BareDatabase&) = delete;
  BareDatabase& operator=(const BareDatabase&) = delete;
  BareDatabase(BareDatabase&&) = delete;
  BareDatabase& operator=(BareDatabase&&) = delete;

  void execute(const std::string& statements) const {
    sqlite3_exec(connection_, statements.c_str(), nullptr, nullptr, nullptr);
  }

  using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;
  [[nodiscard]] Statement prepare(const std::string& text) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v3(connection_, text.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    return {statement, &sqlite3_finalize};
  }

  using Value = std::unique_ptr<sqlite3_value, decltype(&sqlite3_value_free)>;
  using Row = std::vector<Value>;

  /// The first rows of a table that has a `key`.
  [[nodiscard]] std::vector<Row> rows(const std::string& table, std::size_t limit) const {
    std::vector<Row> rows;
    const auto query = prepare("SELECT * FROM " + table + " ORDER BY key LIMIT " + std::to_string(limit));
    while (sqlite3_step(query.get()) == SQLITE_ROW) {
      Row& row = rows.emplace_back();
      for (int column = 0; column < sqlite3_column_count(query.get()); ++column) {
        row.emplace_back(sqlite3_value_dup(sqlite3_column_value(query.get(), column)), &sqlite3_value_free);
      }
    }
    return rows;
  }

  static void run(sqlite3_stmt* statement) {
    sqlite3_step(statement);
    sqlite3_reset(statement);
  }

  /// Inserts a row under another key.
  static void insert(sqlite3_stmt* statement, const Row& row, std::int64_t key) {
    sqlite3_bind_int64(statement, 1, key);
    for (std::size_t column = 1; column < row.size(); ++column) {
      sqlite3_bind_value(statement, static_cast<int>(column) + 1, row[column].get());
    }
    run(statement);
  }

 private:
  sqlite3* connection_ = nullptr;
};

}  // namespace quellin::benchmarks
