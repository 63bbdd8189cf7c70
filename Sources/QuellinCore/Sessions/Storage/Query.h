#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// One run of a prepared statement: bind the parameters in their order, then `step` through the rows or
/// `run`. The statement is prepared once per connection and lent out for the life of the query. Must not
/// outlive the database.
class Query {
 public:
  /// `text` is one statement; the storage behind it must outlive the database (a literal).
  Query(Database& database, std::string_view text);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;
  Query(Query&&) = delete;
  Query& operator=(Query&&) = delete;

  /// Binds the next parameter. Text and bytes are not copied: they must outlive the last `step`. A number
  /// that is not finite is refused as not storable.
  Query& bind(std::int64_t value);
  Query& bind(double value);
  Query& bindText(std::string_view value);
  Query& bindBytes(std::string_view value);
  Query& bindNull();
  Query& bind(const std::optional<std::int64_t>& value) { return value ? bind(*value) : bindNull(); }
  Query& bind(const std::optional<double>& value) { return value ? bind(*value) : bindNull(); }

  /// Moves to the next row; false when there is none.
  bool step();
  /// Runs a statement that returns no row.
  void run();
  /// Makes the query ready to be bound and run again.
  void reset();

  [[nodiscard]] bool isNull(int column) const;
  [[nodiscard]] bool isInteger(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] double real(int column) const;
  /// Text or bytes, valid until the next `step`, `reset` or the end of the query.
  [[nodiscard]] std::string_view bytes(int column) const;

 private:
  void check(int code) const;

  Database& database_;
  std::string_view text_;
  Database::Statement statement_;
  int bound_ = 0;
};

}  // namespace quellin
