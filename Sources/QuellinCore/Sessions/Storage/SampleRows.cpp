#include "QuellinCore/Sessions/Storage/SampleRows.h"

#include "QuellinCore/Sessions/Storage/Query.h"

namespace quellin {
namespace {

void write(Query& query, std::int64_t key, const SampleColumns& columns, const StoredFacts& facts) {
  RowWriter writer(query);
  writer.add(key);
  writer.add(columns.id);
  writer.add(columns.timestamp);
  writer.add(columns.elapsedSeconds);
  writer.add(columns.totalWatts);
  writer.add(columns.batteryPercent);
  writer.add(columns.acConnected);
  writer.add(columns.thermalPressure);
  writer.add(columns.maxFanRPM);
  writer.add(columns.maxTemperature);
  writer.add(columns.createdAt);
  writer.add(facts.powerSource);
  writer.addBytes(facts.contributions);
  writer.run();
}

}  // namespace

// Each look finds the first sample behind those of the session before.
bool hasSamplesWithoutSession(Database& database) {
  Query query(database,
              "WITH RECURSIVE Owner(key) AS ("
              " SELECT min(key) >> ?1 FROM PowerSessionSample"
              " UNION"
              " SELECT (SELECT min(key) FROM PowerSessionSample WHERE key > (Owner.key << ?1 | ?2)) >> ?1"
              " FROM Owner WHERE Owner.key IS NOT NULL)"
              "SELECT EXISTS (SELECT 1 FROM Owner WHERE key IS NOT NULL"
              " AND NOT EXISTS (SELECT 1 FROM PowerSession WHERE PowerSession.key = Owner.key))");
  return query.bind(bitsInSession).bind(lastInSession).step() && query.integer(0) != 0;
}

std::optional<std::int64_t> nextSampleKey(Database& database, std::int64_t session) {
  const KeyRange keys = keysOf(session);
  Query query(
      database,
      "SELECT (SELECT max(last) FROM (SELECT max(key) AS last FROM PowerSessionSample WHERE key BETWEEN ?2 "
      "AND ?3 UNION ALL SELECT max(key) FROM SampleBlobs WHERE key BETWEEN ?2 AND ?3)) FROM PowerSession "
      "WHERE key = ?1");
  query.bind(session).bind(keys.first).bind(keys.last);
  if (!query.step()) return std::nullopt;
  if (query.isNull(0)) return keys.first;
  if (query.integer(0) == keys.last)
    throw database.error(StoreError::Kind::notStorable, "the session has too many samples");
  return query.integer(0) + 1;
}

void insertSample(Database& database, std::int64_t key, const SampleColumns& columns,
                  const StoredFacts& facts) {
  Query query(database, "INSERT INTO PowerSessionSample VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  write(query, key, columns, facts);
}

void updateSample(Database& database, std::int64_t key, const SampleColumns& columns) {
  Query query(
      database,
      "UPDATE PowerSessionSample SET id = ?2, timestamp = ?3, elapsedSeconds = ?4, totalWatts = ?5, "
      "batteryPercent = ?6, acConnected = ?7, thermalPressure = ?8, maxFanRPM = ?9, maxTemperature = ?10, "
      "createdAt = ?11, powerSource = ?12, contributions = ?13, checksum = ?14 WHERE key = ?1");
  write(query, key, columns, {});
}

bool readSample(RowReader& reader, SampleRow& row) {
  reader.restart();
  SampleColumns& columns = row.columns;
  reader.read(row.key);
  reader.read(columns.id);
  reader.read(columns.timestamp);
  reader.read(columns.elapsedSeconds);
  reader.read(columns.totalWatts);
  reader.read(columns.batteryPercent);
  reader.read(columns.acConnected);
  reader.read(columns.thermalPressure);
  reader.read(columns.maxFanRPM);
  reader.read(columns.maxTemperature);
  reader.read(columns.createdAt);
  reader.read(row.powerSource);
  reader.read(row.contributions);
  return reader.isWhole();
}

}  // namespace quellin
