#pragma once

#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// While it lives, all readings of a database see it as it was at the first of them, whatever other processes
/// write. The database must not be written meanwhile.
class [[gnu::visibility("hidden")]] ReadSnapshot {
 public:
  explicit ReadSnapshot(Database& database) : database_(database) { database_.execute("BEGIN"); }
  ReadSnapshot(const ReadSnapshot&) = delete;
  ReadSnapshot& operator=(const ReadSnapshot&) = delete;
  ReadSnapshot(ReadSnapshot&&) = delete;
  ReadSnapshot& operator=(ReadSnapshot&&) = delete;
  ~ReadSnapshot() {
    try {
      database_.execute("COMMIT");
    } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch)
      // Ending a transaction that wrote nothing fails only where the database has ended it itself.
    }
  }

 private:
  Database& database_;
};

}  // namespace quellin
