#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// A session as it lies in the store.
struct SessionRow {
  std::int64_t key = 0;
  PowerSessionColumns columns;
};

/// All sessions, in the order stored. Throws damaged when a row is not what was written, or when samples tell
/// of one that is missing.
[[nodiscard]] std::vector<SessionRow> readSessions(Database& database);

/// The session with key `key`, whatever the others are like; no value when it is not there. Throws damaged
/// when its row is not what was written.
[[nodiscard]] std::optional<SessionRow> readSession(Database& database, std::int64_t key);

/// Writes a new session; returns its key.
[[nodiscard]] std::int64_t insertSession(Database& database, const PowerSessionColumns& columns);

/// Writes the values of a session that has a key; no effect when it is no longer there.
void updateSession(Database& database, const SessionRow& row);

/// Deletes a session with all that belongs to it; no effect when it is no longer there.
void deleteSession(Database& database, std::int64_t key);

}  // namespace quellin
