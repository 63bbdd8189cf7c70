#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Support/Checksum.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

/// The bytes of a row over which its CRC-32C is taken, value after value: numbers as their 8 bytes, lowest
/// first, text and bytes behind their length, an optional value behind a byte that is 1 when it is there and
/// 0 when not.
class RowDigest {
 public:
  RowDigest() { bytes_.reserve(usualLength); }

  void add(std::int64_t value) { addRaw(&value, sizeof value); }
  void add(double value) { addRaw(&value, sizeof value); }
  void add(std::string_view value) {
    add(static_cast<std::int64_t>(value.size()));
    bytes_.append(value);
  }
  void addPresence(bool isPresent) { bytes_.push_back(isPresent ? '\1' : '\0'); }
  void clear() { bytes_.clear(); }
  [[nodiscard]] std::int64_t checksum() const { return std::int64_t{crc32c(bytes_)}; }

 private:
  static constexpr std::size_t usualLength = 160;

  void addRaw(const void* data, std::size_t size) { bytes_.append(static_cast<const char*>(data), size); }

  std::string bytes_;
};

/// Writes the key and the values of a row into the parameters of a query, in their order, and its checksum
/// last. Text and bytes must outlive the run of the query.
class RowWriter {
 public:
  explicit RowWriter(Query& query) : query_(query) {}

  void add(std::int64_t value) {
    digest_.add(value);
    query_.bind(value);
  }
  void add(double value) {
    digest_.add(value);
    query_.bind(value);
  }
  void add(bool value) { add(std::int64_t{value}); }
  void add(Instant value) { add(value.time_since_epoch().count()); }
  void addText(std::string_view value) {
    digest_.add(value);
    query_.bindText(value);
  }
  void addBytes(std::string_view value) {
    digest_.add(value);
    query_.bindBytes(value);
  }
  void addBytes(const std::optional<std::string>& value) {
    digest_.addPresence(value.has_value());
    if (value) {
      addBytes(std::string_view(*value));
    } else {
      query_.bindNull();
    }
  }
  void add(const UUID& value);
  template <class T>
  void add(const std::optional<T>& value) {
    digest_.addPresence(value.has_value());
    if (!value) {
      query_.bindNull();
    } else if constexpr (std::is_same_v<T, std::string>) {
      addText(*value);
    } else {
      add(*value);
    }
  }

  /// Binds the checksum and runs the query.
  void run() {
    query_.bind(digest_.checksum());
    query_.run();
  }

 private:
  Query& query_;
  RowDigest digest_;
};

/// Reads the row that a query stands on, in the order in which it was written.
class RowReader {
 public:
  explicit RowReader(const Query& query) : query_(query) {}

  /// Begins another row.
  void restart() {
    column_ = 0;
    digest_.clear();
  }

  void read(std::int64_t& value) { digest_.add(value = query_.integer(column_++)); }
  void read(double& value) { digest_.add(value = query_.real(column_++)); }
  void read(bool& value) {
    std::int64_t number = 0;
    read(number);
    value = number != 0;
  }
  void read(Instant& value) {
    double seconds = 0;
    read(seconds);
    value = instantAt(seconds);
  }
  void read(std::string_view& value) { digest_.add(value = query_.bytes(column_++)); }
  void read(std::string& value) {
    std::string_view view;
    read(view);
    value = view;
  }
  void read(UUID& value);
  template <class T>
  void read(std::optional<T>& value) {
    const bool isPresent = !query_.isNull(column_);
    digest_.addPresence(isPresent);
    if (isPresent) {
      read(value.emplace());
    } else {
      value.reset();
      ++column_;
    }
  }

  /// Whether the checksum, which comes next, agrees with what was read, or says that somebody edited the row
  /// by SQL, which the triggers of the store note there.
  [[nodiscard]] bool isWhole() const {
    if (query_.isInteger(column_)) return query_.integer(column_) == digest_.checksum();
    return query_.bytes(column_) == "edited";
  }

 private:
  const Query& query_;
  int column_ = 0;
  RowDigest digest_;
};

}  // namespace quellin
