#include "QuellinCore/Sessions/Storage/CostRows.h"

#include <cmath>
#include <limits>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/SampleRows.h"
#include "QuellinCore/Sessions/Storage/SealedRow.h"

namespace quellin {
namespace {

// Somebody who edits the store by SQL can write what no clock shows.
bool isPossible(const RecorderCost& cost) {
  return std::isfinite(cost.cpuSeconds) && cost.cpuSeconds >= 0 && cost.bytesWritten >= 0;
}

bool hasUncountedSamples(Database& database, std::int64_t session) {
  const KeyRange keys = keysOf(session);
  Query query(database, "SELECT 1 FROM PowerSessionSample WHERE key BETWEEN ? AND ? LIMIT 1");
  return query.bind(keys.first).bind(keys.last).step();
}

bool isThere(Database& database, std::int64_t session) {
  return Query(database, "SELECT 1 FROM PowerSession WHERE key = ?").bind(session).step();
}

}  // namespace

StoredCost readCost(Database& database, std::int64_t session) {
  Query query(database, "SELECT * FROM RecorderCost WHERE key = ?");
  query.bind(session);
  if (!query.step()) return {};
  RowReader reader(query);
  std::int64_t key = 0;
  RecorderCost cost;
  reader.read(key);
  reader.read(cost.cpuSeconds);
  reader.read(cost.bytesWritten);
  if (!reader.isWhole() || !isPossible(cost)) return {.cost = std::nullopt, .isDamaged = true};
  return {.cost = cost};
}

void addCost(Database& database, std::int64_t session, const RecorderCost& more) {
  const StoredCost stored = readCost(database, session);
  if (stored.isDamaged || !isThere(database, session)) return;
  if (!stored.cost && hasUncountedSamples(database, session)) return;
  const RecorderCost before = stored.cost.value_or(RecorderCost());
  if (before.bytesWritten > std::numeric_limits<std::int64_t>::max() - more.bytesWritten) return;
  Query query(database, "INSERT OR REPLACE INTO RecorderCost VALUES (?, ?, ?, ?)");
  RowWriter writer(query);
  writer.add(session);
  writer.add(before.cpuSeconds + more.cpuSeconds);
  writer.add(before.bytesWritten + more.bytesWritten);
  writer.run();
}

}  // namespace quellin
