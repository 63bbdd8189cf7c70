#include "QuellinCore/Sessions/Storage/Database.h"

#include <cerrno>
#include <chrono>
#include <new>
#include <string>
#include <utility>

#include <sqlite3.h>

#include "QuellinCore/Sessions/Storage/Query.h"

namespace quellin {
namespace {

StoreError::Kind kindOf(int extendedCode) {
  using enum StoreError::Kind;
  switch (extendedCode & 0xFF) {
    case SQLITE_NOTADB:
      return notAStore;
    case SQLITE_CORRUPT:
    // Our statements are fixed: one that does not fit the tables says that the schema is not what it must be.
    case SQLITE_ERROR:
    case SQLITE_FORMAT:
      return damaged;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return cannotOpen;
    case SQLITE_READONLY:
      return readOnly;
    case SQLITE_FULL:
      return diskFull;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return locked;
    case SQLITE_IOERR:
      return io;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
      return notStorable;
    default:
      return failed;
  }
}

// A full disk has a code of its own only where it refuses what is written; elsewhere, as for the index of the
// log, and of a quota, the system's number for the error tells.
int codeWithoutRoom(sqlite3* connection, int code) {
  if ((code & 0xFF) != SQLITE_IOERR) return code;
  const int number = sqlite3_system_errno(connection);
  return number == ENOSPC || number == EDQUOT ? SQLITE_FULL : code;
}

std::string fileURI(const std::filesystem::path& path) {
  std::string uri = "file:";
  for (const char character : path.native()) {
    if (character == '%') {
      uri += "%25";
    } else if (character == '?') {
      uri += "%3f";
    } else if (character == '#') {
      uri += "%23";
    } else {
      uri += character;
    }
  }
  return uri;
}

}  // namespace

void Database::Closer::operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }

void Database::Finalizer::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Database::Database(std::filesystem::path path, Access access, const StoreFileOptions& options)
    : path_(std::move(path)) {
  if (access == Access::readWrite) {
    open(path_.c_str(), SQLITE_OPEN_READWRITE, options);
    // Without write permission SQLite quietly opens for reading.
    if (sqlite3_db_readonly(connection_.get(), "main") == 1) {
      throw error(StoreError::Kind::readOnly, "the file cannot be written");
    }
  } else {
    // Through SQLite, not with open(2): closing a descriptor would drop the locks of this process's other
    // connections.
    open((fileURI(path_) + "?immutable=1").c_str(), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, options);
  }
}

Database::Database() { open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, {}); }

Database::~Database() = default;

void Database::open(const char* name, int flags, const StoreFileOptions& options) {
  sqlite3* connection = nullptr;
  const char* fileSystem = options.fileSystem.empty() ? nullptr : options.fileSystem.c_str();
  const int code = sqlite3_open_v2(name, &connection, flags | SQLITE_OPEN_NOMUTEX, fileSystem);
  connection_.reset(connection);
  if (code != SQLITE_OK) fail(connection == nullptr ? code : sqlite3_extended_errcode(connection));
  sqlite3_extended_result_codes(connection, 1);
  sqlite3_busy_timeout(
      connection,
      static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(options.busyTimeout).count()));
  // A store comes from anywhere: nothing in its schema may reach further than its tables.
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
}

void Database::execute(const std::string& statements) {
  const int code = sqlite3_exec(connection_.get(), statements.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(code);
}

std::int64_t Database::integer(std::string_view statement) {
  Query query(*this, statement);
  return query.step() ? query.integer(0) : 0;
}

bool Database::isInTransaction() const { return sqlite3_get_autocommit(connection_.get()) == 0; }

std::int64_t Database::pagesWritten() const {
  int pages = 0;
  int unused = 0;
  sqlite3_db_status(connection_.get(), SQLITE_DBSTATUS_CACHE_WRITE, &pages, &unused, 0);
  return pages;
}

void Database::setCheckpointOnClose(bool isOn) {
  sqlite3_db_config(connection_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, isOn ? 0 : 1, nullptr);
}

StoreError Database::error(StoreError::Kind kind, std::string cause) const {
  return {kind, path_, std::move(cause)};
}

void Database::fail(int code) const {
  if (connection_ == nullptr) throw error(kindOf(code), sqlite3_errstr(code));
  const int meant = codeWithoutRoom(connection_.get(), code);
  throw error(kindOf(meant), meant == code ? sqlite3_errmsg(connection_.get()) : sqlite3_errstr(meant));
}

Database::Statement Database::take(std::string_view text) {
  if (const auto found = idle_.find(text.data()); found != idle_.end() && !found->second.empty()) {
    Statement statement = std::move(found->second.back());
    found->second.pop_back();
    return statement;
  }
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v3(connection_.get(), text.data(), static_cast<int>(text.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (code != SQLITE_OK) fail(code);
  return Statement(statement);
}

void Database::giveBack(std::string_view text, Statement statement) noexcept {
  // The outcome of the last step has been reported already; resetting repeats it.
  sqlite3_reset(statement.get());
  sqlite3_clear_bindings(statement.get());
  try {
    idle_[text.data()].push_back(std::move(statement));
  } catch (const std::bad_alloc&) {
    // Without room to keep it the statement is finalized and prepared anew next time.
    return;
  }
}

}  // namespace quellin
