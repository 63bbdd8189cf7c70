#include "QuellinCore/Sessions/Storage/Query.h"

#include <cmath>
#include <utility>

#include <sqlite3.h>

namespace quellin {
namespace {

// SQLite takes a null pointer for NULL, which an empty view may be.
const char* dataOf(std::string_view value) { return value.data() == nullptr ? "" : value.data(); }

}  // namespace

Query::Query(Database& database, std::string_view text)
    : database_(database), text_(text), statement_(database.take(text)) {}

Query::~Query() { database_.giveBack(text_, std::move(statement_)); }

void Query::check(int code) const {
  if (code != SQLITE_OK) database_.fail(code);
}

Query& Query::bind(std::int64_t value) {
  check(sqlite3_bind_int64(statement_.get(), ++bound_, value));
  return *this;
}

Query& Query::bind(double value) {
  if (!std::isfinite(value)) throw database_.error(StoreError::Kind::notStorable, "a number is not finite");
  check(sqlite3_bind_double(statement_.get(), ++bound_, value));
  return *this;
}

Query& Query::bindText(std::string_view value) {
  check(sqlite3_bind_text64(statement_.get(), ++bound_, dataOf(value), value.size(), SQLITE_STATIC,
                            SQLITE_UTF8));
  return *this;
}

Query& Query::bindBytes(std::string_view value) {
  check(sqlite3_bind_blob64(statement_.get(), ++bound_, dataOf(value), value.size(), SQLITE_STATIC));
  return *this;
}

Query& Query::bindNull() {
  check(sqlite3_bind_null(statement_.get(), ++bound_));
  return *this;
}

bool Query::step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) database_.fail(code);
  return false;
}

void Query::run() {
  while (step()) {
  }
}

void Query::reset() {
  sqlite3_reset(statement_.get());
  bound_ = 0;
}

bool Query::isNull(int column) const { return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL; }

bool Query::isInteger(int column) const {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_INTEGER;
}

std::int64_t Query::integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }

double Query::real(int column) const { return sqlite3_column_double(statement_.get(), column); }

std::string_view Query::bytes(int column) const {
  const void* data = sqlite3_column_blob(statement_.get(), column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  return data == nullptr ? std::string_view() : std::string_view(static_cast<const char*>(data), size);
}

}  // namespace quellin
