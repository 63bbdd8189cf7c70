#include "QuellinCore/Sessions/Storage/SessionRows.h"

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/SampleRows.h"
#include "QuellinCore/Sessions/Storage/SealedRow.h"

namespace quellin {
namespace {

void write(RowWriter& writer, const SessionRow& row) {
  const PowerSessionColumns& columns = row.columns;
  writer.add(row.key);
  writer.add(columns.id);
  writer.addText(columns.title);
  writer.add(columns.startedAt);
  writer.add(columns.endedAt);
  writer.add(columns.statusRaw);
  writer.add(columns.sourceRaw);
  writer.addText(columns.appVersion);
  writer.add(columns.schemaVersion);
  writer.add(columns.sampleInterval);
  writer.add(columns.createdAt);
  writer.run();
}

SessionRow read(RowReader& reader) {
  SessionRow row;
  PowerSessionColumns& columns = row.columns;
  reader.read(row.key);
  reader.read(columns.id);
  reader.read(columns.title);
  reader.read(columns.startedAt);
  reader.read(columns.endedAt);
  reader.read(columns.statusRaw);
  reader.read(columns.sourceRaw);
  reader.read(columns.appVersion);
  reader.read(columns.schemaVersion);
  reader.read(columns.sampleInterval);
  reader.read(columns.createdAt);
  return row;
}

StoreError damagedRecord(const Database& database) {
  return database.error(StoreError::Kind::damaged, "the record of a session is damaged");
}

}  // namespace

std::vector<SessionRow> readSessions(Database& database) {
  if (hasSamplesWithoutSession(database)) {
    throw database.error(StoreError::Kind::damaged, "the record of a session is missing");
  }
  std::vector<SessionRow> rows;
  Query query(database, "SELECT * FROM PowerSession ORDER BY key");
  RowReader reader(query);
  while (query.step()) {
    reader.restart();
    rows.push_back(read(reader));
    const bool isInPlace = rows.size() == 1 || rows.back().key > rows[rows.size() - 2].key;
    if (!reader.isWhole() || !isInPlace) throw damagedRecord(database);
  }
  return rows;
}

std::optional<SessionRow> readSession(Database& database, std::int64_t key) {
  Query query(database, "SELECT * FROM PowerSession WHERE key = ?");
  query.bind(key);
  if (!query.step()) return std::nullopt;
  RowReader reader(query);
  SessionRow row = read(reader);
  if (!reader.isWhole() || row.key != key) throw damagedRecord(database);
  return row;
}

std::int64_t insertSession(Database& database, const PowerSessionColumns& columns) {
  // The sequence also remembers the keys of deleted sessions, which are not given again.
  const std::int64_t key = database.integer(
      "SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = 'PowerSession'), 0),"
      " coalesce((SELECT max(key) FROM PowerSession), 0)) + 1");
  Query query(database, "INSERT INTO PowerSession VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  RowWriter writer(query);
  write(writer, {key, columns});
  return key;
}

void updateSession(Database& database, const SessionRow& row) {
  Query query(database,
              "UPDATE PowerSession SET id = ?2, title = ?3, startedAt = ?4, endedAt = ?5, statusRaw = ?6, "
              "sourceRaw = ?7, "
              "appVersion = ?8, schemaVersion = ?9, sampleInterval = ?10, createdAt = ?11, checksum = ?12 "
              "WHERE key = ?1");
  RowWriter writer(query);
  write(writer, row);
}

void deleteSession(Database& database, std::int64_t key) {
  Query(database, "DELETE FROM PowerSession WHERE key = ?").bind(key).run();
}

}  // namespace quellin
