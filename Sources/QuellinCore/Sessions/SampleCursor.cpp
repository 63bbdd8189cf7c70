#include "QuellinCore/Sessions/SampleCursor.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/SampleRows.h"
#include "QuellinCore/Sessions/Storage/SessionBlobs.h"
#include "QuellinCore/Sessions/Storage/StoredFacts.h"

namespace quellin {
namespace {

constexpr std::string_view inStoredOrder =
    "SELECT * FROM PowerSessionSample WHERE key BETWEEN ? AND ? ORDER BY key";
constexpr std::string_view inOrderOfTime =
    "SELECT * FROM PowerSessionSample WHERE key BETWEEN ? AND ? ORDER BY timestamp, key";

// Only a wall clock that was set back puts samples out of order; sorting costs several times the walk.
bool isStoredInOrderOfTime(Database& database, const KeyRange& keys) {
  Query query(database, "SELECT timestamp FROM PowerSessionSample WHERE key BETWEEN ? AND ? ORDER BY key");
  query.bind(keys.first).bind(keys.last);
  double previous = -std::numeric_limits<double>::infinity();
  while (query.step()) {
    const double timestamp = query.real(0);
    if (timestamp < previous) return false;
    previous = timestamp;
  }
  return true;
}

}  // namespace

struct [[gnu::visibility("hidden")]] SampleCursor::State {
  State(Database& ofDatabase, SessionBlobs& ofBlobs, OnDamage onRowDamage, Order order)
      : database(ofDatabase),
        blobs(ofBlobs),
        onDamage(onRowDamage),
        keys(keysOf(ofBlobs.session())),
        isInStoredOrder(order == Order::stored || isStoredInOrderOfTime(ofDatabase, keys)),
        nextKey(keys.first),
        end(nextSampleKey(ofDatabase, ofBlobs.session()).value_or(keys.first)),
        query(ofDatabase, isInStoredOrder ? inStoredOrder : inOrderOfTime),
        reader(query) {
    query.bind(keys.first).bind(keys.last);
  }

  // The keys of a session follow one another. A gap means rows that the file has lost, a step back pages that
  // it has mixed up. In order of time a row that is there twice stands beside itself, and the end tells how
  // many have not come.
  bool hasKeyInPlace() {
    if (!isInStoredOrder) return row.key >= keys.first && std::exchange(previousKey, row.key) != row.key;
    if (row.key < nextKey) return false;
    unreadable = std::max(unreadable, row.key - nextKey);
    nextKey = row.key + 1;
    return true;
  }

  void countMissing() {
    unreadable = isInStoredOrder ? std::max(unreadable, end - nextKey)
                                 : std::max(unreadable, end - keys.first - good - skipped);
    nextKey = end;
  }

  void countSkipped() {
    if (unreadable > 0 && onDamage == OnDamage::fail) {
      throw database.error(StoreError::Kind::damaged, "samples of a session are damaged");
    }
    skipped += std::exchange(unreadable, 0);
  }

  Database& database;
  SessionBlobs& blobs;
  OnDamage onDamage;
  KeyRange keys;
  bool isInStoredOrder;
  std::int64_t nextKey;                     // in stored order: the one that must come
  std::optional<std::int64_t> previousKey;  // in order of time: the one that came last
  std::int64_t end;                         // the key behind the last one
  std::int64_t unreadable = 0;              // rows since the last good one
  std::int64_t skipped = 0;
  std::int64_t good = 0;
  Query query;
  RowReader reader;
  SampleRow row;
};

SampleCursor::SampleCursor(Database& database, SessionBlobs& blobs, OnDamage onDamage, Order order)
    : state_(std::make_unique<State>(database, blobs, onDamage, order)) {}

SampleCursor::SampleCursor(SampleCursor&&) noexcept = default;
SampleCursor& SampleCursor::operator=(SampleCursor&&) noexcept = default;
SampleCursor::~SampleCursor() = default;

bool SampleCursor::next() {
  State& state = *state_;
  while (state.query.step()) {
    if (readSample(state.reader, state.row) && state.hasKeyInPlace()) {
      state.countSkipped();
      ++state.good;
      return true;
    }
    ++state.unreadable;
  }
  state.countMissing();
  state.countSkipped();
  return false;
}

const SampleColumns& SampleCursor::columns() const { return state_->row.columns; }

std::optional<SampleFacts> SampleCursor::facts() const {
  return factsFrom(state_->row.powerSource, state_->row.contributions);
}

SampleBlobs SampleCursor::blobs() const { return state_->blobs.read(state_->row.key); }

std::int64_t SampleCursor::key() const { return state_->row.key; }

std::int64_t SampleCursor::skipped() const { return state_->skipped; }

}  // namespace quellin
