#pragma once

#include <cstdint>

#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// Marks a database as a session store: "Quel" in the header of the file.
inline constexpr std::int64_t storeApplicationID = 0x5175656C;

/// The version of the tables that this software reads and writes.
inline constexpr std::int64_t storeVersion = 2;

/// What the header of a database says it is; all zeros for an empty one.
struct StoreIdentity {
  std::int64_t applicationID = 0;
  std::int64_t version = 0;
  std::int64_t schemaVersion = 0;  ///< counts the changes of the tables

  bool operator==(const StoreIdentity&) const = default;
};

/// Reads the identity of a database.
[[nodiscard]] StoreIdentity storeIdentity(Database& database);

/// Throws notAStore or tooNew unless the database is empty or a session store of a version that this software
/// knows.
void requireKnown(const Database& database, const StoreIdentity& identity);

/// Brings the tables from whatever version they have (0: none yet) to `storeVersion`, one version after the
/// other, each in a transaction of its own. Throws as `requireKnown` does, and damaged when tables are
/// missing or altered.
void migrate(Database& database);

}  // namespace quellin
