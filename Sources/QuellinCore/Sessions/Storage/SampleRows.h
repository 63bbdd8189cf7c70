#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "QuellinCore/Sessions/SampleColumns.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/SealedRow.h"
#include "QuellinCore/Sessions/Storage/StoredFacts.h"

namespace quellin {

/// The keys that the rows of a session may have, in samples, blobs and references: its key times 2^32, and
/// up.
struct KeyRange {
  std::int64_t first = 0;
  std::int64_t last = 0;
};

/// How many of a row's bits are its own; the others are the key of its session.
inline constexpr std::int64_t bitsInSession = 32;
/// The highest key that a row may have within its session.
inline constexpr std::int64_t lastInSession = (std::int64_t{1} << bitsInSession) - 1;

/// The keys of the session with key `session`.
[[nodiscard]] constexpr KeyRange keysOf(std::int64_t session) {
  return {session << bitsInSession, (session << bitsInSession) | lastInSession};
}

/// Whether samples tell of a session whose record is not where it must be, because a page of the file stands
/// in the place of the right one, or is an older version of it. One look per session.
[[nodiscard]] bool hasSamplesWithoutSession(Database& database);

/// The key that the next sample of a session gets, which is behind all blobs, too: those whose samples the
/// file has lost tell of them. No value when the session is no longer there.
[[nodiscard]] std::optional<std::int64_t> nextSampleKey(Database& database, std::int64_t session);

/// Writes a new sample's row.
void insertSample(Database& database, std::int64_t key, const SampleColumns& columns,
                  const StoredFacts& facts);

/// Writes the values of a stored sample and takes its facts away; no effect when it is no longer there.
void updateSample(Database& database, std::int64_t key, const SampleColumns& columns);

/// One sample as a scan reads it; `contributions` is valid until the scan moves on.
struct SampleRow {
  std::int64_t key = 0;
  SampleColumns columns;
  std::optional<std::int64_t> powerSource;
  std::optional<std::string_view> contributions;
};

/// Reads the row, all columns in the order of the table, into `row`; false when it is not what was
/// written.
[[nodiscard]] bool readSample(RowReader& reader, SampleRow& row);

}  // namespace quellin
