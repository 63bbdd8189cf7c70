#include "QuellinCore/Sessions/Storage/StoreSchema.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/Transaction.h"

namespace quellin {
namespace {

// A sample's key is its session's key times 2^32 plus its place in the session: the samples of a session lie
// together, in the order stored, with no index to keep. The triggers stand for what a foreign key would do,
// and keep whoever edits the store by SQL from leaving stale derived values or checksums behind: see
// docs/formats.md.
constexpr const char* version1 = R"sql(
CREATE TABLE PowerSession (
  key INTEGER PRIMARY KEY AUTOINCREMENT,
  id BLOB NOT NULL,
  title TEXT NOT NULL,
  startedAt REAL NOT NULL,
  endedAt REAL,
  statusRaw TEXT,
  sourceRaw TEXT,
  appVersion TEXT NOT NULL,
  schemaVersion INTEGER NOT NULL,
  sampleInterval REAL NOT NULL,
  createdAt REAL NOT NULL,
  checksum
);

CREATE TABLE PowerSessionSample (
  key INTEGER PRIMARY KEY,
  id BLOB NOT NULL,
  timestamp REAL NOT NULL,
  elapsedSeconds REAL NOT NULL,
  totalWatts REAL,
  batteryPercent INTEGER,
  acConnected INTEGER,
  thermalPressure INTEGER NOT NULL,
  maxFanRPM INTEGER,
  maxTemperature REAL,
  createdAt REAL NOT NULL,
  powerSource INTEGER,
  contributions BLOB,
  checksum
);

CREATE TABLE SampleBlobs (
  key INTEGER PRIMARY KEY,
  snapshotData BLOB NOT NULL,
  processActivityData BLOB,
  proTelemetryData BLOB
);

CREATE TABLE BlobReference (
  key INTEGER PRIMARY KEY,
  data BLOB NOT NULL
);

CREATE TRIGGER deletedSession AFTER DELETE ON PowerSession BEGIN
  DELETE FROM PowerSessionSample WHERE key BETWEEN OLD.key << 32 AND (OLD.key << 32) | 0xFFFFFFFF;
  DELETE FROM SampleBlobs WHERE key BETWEEN OLD.key << 32 AND (OLD.key << 32) | 0xFFFFFFFF;
  DELETE FROM BlobReference WHERE key BETWEEN OLD.key << 32 AND (OLD.key << 32) | 0xFFFFFFFF;
END;

CREATE TRIGGER changedBlobs AFTER UPDATE ON SampleBlobs BEGIN
  UPDATE PowerSessionSample SET powerSource = NULL, contributions = NULL, checksum = 'edited' WHERE key = NEW.key;
END;

CREATE TRIGGER deletedBlobs AFTER DELETE ON SampleBlobs BEGIN
  UPDATE PowerSessionSample SET powerSource = NULL, contributions = NULL, checksum = 'edited' WHERE key = OLD.key;
END;

CREATE TRIGGER editedSample AFTER UPDATE ON PowerSessionSample WHEN NEW.checksum IS OLD.checksum BEGIN
  UPDATE PowerSessionSample SET powerSource = NULL, contributions = NULL, checksum = 'edited' WHERE key = NEW.key;
END;

CREATE TRIGGER editedSession AFTER UPDATE ON PowerSession WHEN NEW.checksum IS OLD.checksum BEGIN
  UPDATE PowerSession SET checksum = 'edited' WHERE key = NEW.key;
END;
)sql";

// What recording cost has a row of its own, which sessions recorded by earlier software have not.
constexpr const char* version2 = R"sql(
CREATE TABLE RecorderCost (
  key INTEGER PRIMARY KEY,
  cpuSeconds REAL NOT NULL,
  bytesWritten INTEGER NOT NULL,
  checksum
);

CREATE TRIGGER deletedSessionCost AFTER DELETE ON PowerSession BEGIN
  DELETE FROM RecorderCost WHERE key = OLD.key;
END;

CREATE TRIGGER editedCost AFTER UPDATE ON RecorderCost WHEN NEW.checksum IS OLD.checksum BEGIN
  UPDATE RecorderCost SET checksum = 'edited' WHERE key = NEW.key;
END;
)sql";

// Element n leads from version n to version n + 1. Entries are only ever added.
constexpr std::array<const char*, storeVersion> steps{version1, version2};

// SQLite keeps every statement of the schema as it was written. A changed one would change what our own
// statements do.
void requireWholeSchema(Database& database) {
  static constexpr std::int64_t objectCount = 12;
  std::int64_t found = 0;
  Query query(database, "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL");
  while (query.step()) {
    const auto holdsIt = [&](std::string_view step) { return step.contains(query.bytes(0)); };
    found += std::ranges::any_of(steps, holdsIt) ? 1 : 0;
  }
  if (found != objectCount)
    throw database.error(StoreError::Kind::damaged, "the tables are not those of a session store");
}

}  // namespace

StoreIdentity storeIdentity(Database& database) {
  return {.applicationID = database.integer("PRAGMA application_id"),
          .version = database.integer("PRAGMA user_version"),
          .schemaVersion = database.integer("PRAGMA schema_version")};
}

void requireKnown(const Database& database, const StoreIdentity& identity) {
  if (identity == StoreIdentity{}) return;
  if (identity.applicationID != storeApplicationID || identity.version < 1) {
    throw database.error(StoreError::Kind::notAStore, "the file is not a session store");
  }
  if (identity.version > storeVersion) {
    throw database.error(StoreError::Kind::tooNew, "the file has format " + std::to_string(identity.version) +
                                                       ", this software knows formats up to " +
                                                       std::to_string(storeVersion));
  }
}

void migrate(Database& database) {
  while (true) {
    if (database.integer("PRAGMA user_version") == storeVersion) break;
    Transaction transaction(database);
    const StoreIdentity identity = storeIdentity(database);
    requireKnown(database, identity);
    if (identity.version < storeVersion) {  // another process may have been faster
      database.execute(steps.at(static_cast<std::size_t>(identity.version)));
      database.execute("PRAGMA application_id = " + std::to_string(storeApplicationID) +
                       "; PRAGMA user_version = " + std::to_string(identity.version + 1));
    }
    transaction.commit();
  }
  requireWholeSchema(database);
}

}  // namespace quellin
