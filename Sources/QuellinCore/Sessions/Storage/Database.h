#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "QuellinCore/Sessions/StoreError.h"
#include "QuellinCore/Sessions/StoreFileOptions.h"

struct sqlite3;
struct sqlite3_stmt;

namespace quellin {

/// One connection to an SQLite database, and its prepared statements. Every failure is thrown as a
/// `StoreError` with the path of the database. Confined to one thread.
class Database {
 public:
  /// How an existing file is opened.
  enum class Access {
    readWrite,  ///< as usual; an empty file counts as an empty database
    peek,       ///< reading the file alone, without its log, and touching nothing
  };
  /// Opens an existing file.
  Database(std::filesystem::path path, Access access, const StoreFileOptions& options);
  /// Opens an empty database in memory that never touches the disk.
  Database();
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  Database(Database&&) = delete;
  Database& operator=(Database&&) = delete;

  /// The file, empty in memory.
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] bool isInMemory() const { return path_.empty(); }

  /// Runs statements that return nothing of interest, separated by semicolons.
  void execute(const std::string& statements);

  /// The single integer that a pragma or query returns; 0 when it returns nothing.
  [[nodiscard]] std::int64_t integer(std::string_view statement);

  /// True between the begin and the end of a transaction.
  [[nodiscard]] bool isInTransaction() const;

  /// How many pages this connection has written, to the log or, while there is none, to the file, since it
  /// was opened; 0 in memory.
  [[nodiscard]] std::int64_t pagesWritten() const;

  /// Whether the last connection to close moves the log into the file, as is usual; off, it leaves both as
  /// they are.
  void setCheckpointOnClose(bool isOn);

  /// A `StoreError` about this database.
  [[nodiscard]] StoreError error(StoreError::Kind kind, std::string cause) const;
  /// Throws what the last failed call on this connection reported; `code` is what it returned.
  [[noreturn]] void fail(int code) const;

 private:
  friend class Query;

  struct Closer {
    void operator()(sqlite3* connection) const;
  };
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

  void open(const char* name, int flags, const StoreFileOptions& options);
  /// A prepared statement that nobody else is using.
  [[nodiscard]] Statement take(std::string_view text);
  /// Gives a statement back for the next use.
  void giveBack(std::string_view text, Statement statement) noexcept;

  std::filesystem::path path_;
  std::unique_ptr<sqlite3, Closer> connection_;
  std::unordered_map<const char*, std::vector<Statement>> idle_;  // by the address of the literal
};

}  // namespace quellin
