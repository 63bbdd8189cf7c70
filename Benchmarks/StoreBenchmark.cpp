// The session store over a generated day. Each figure stands beside its floor: what SQLite alone takes to
// write or read the same bytes with the same settings.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::GeneratedDay;
using testing_support::TemporaryFolder;

constexpr Instant midnight = instantAt(1741046400);

std::shared_ptr<PowerSession> startSession(PowerSessionStore& store) {
  return store.start("benchmark", PowerSessionSource::cli, 1, midnight);
}

// A closed store that holds the whole day.
class RecordedDay {
 public:
  RecordedDay() : path_(folder_.path() / "day.store") {
    PowerSessionStore store("0.9.4", path_);
    const auto session = startSession(store);
    GeneratedDay day;
    for (std::int64_t second = 0; second < GeneratedDay::length; ++second) {
      const auto moment = day.next();
      store.appendSample(session, moment.state, moment.activities, moment.telemetry);
    }
    store.stop(session, midnight + Seconds(GeneratedDay::length));
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  static const RecordedDay& shared() {
    static const RecordedDay day;
    return day;
  }

 private:
  TemporaryFolder folder_;
  std::filesystem::path path_;
};

std::vector<GeneratedDay::Moment> someHours() {
  constexpr std::size_t seconds = 7200;
  std::vector<GeneratedDay::Moment> moments;
  GeneratedDay day;
  while (moments.size() < seconds) moments.push_back(day.next());
  return moments;
}

// Just enough of SQLite for the floors.
class Bare {
 public:
  explicit Bare(const std::filesystem::path& path) { sqlite3_open(path.c_str(), &connection_); }
  ~Bare() { sqlite3_close_v2(connection_); }
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;
  Bare(Bare&&) = delete;
  Bare& operator=(Bare&&) = delete;

  void execute(const std::string& statements) const {
    sqlite3_exec(connection_, statements.c_str(), nullptr, nullptr, nullptr);
  }

  using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;
  [[nodiscard]] Statement prepare(const std::string& text) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v3(connection_, text.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    return {statement, &sqlite3_finalize};
  }

 private:
  sqlite3* connection_ = nullptr;
};

using Value = std::unique_ptr<sqlite3_value, decltype(&sqlite3_value_free)>;
using Row = std::vector<Value>;

std::vector<Row> rowsOf(const Bare& database, const std::string& table, std::size_t limit) {
  std::vector<Row> rows;
  const auto query =
      database.prepare("SELECT * FROM " + table + " ORDER BY key LIMIT " + std::to_string(limit));
  while (sqlite3_step(query.get()) == SQLITE_ROW) {
    Row& row = rows.emplace_back();
    for (int column = 0; column < sqlite3_column_count(query.get()); ++column) {
      row.emplace_back(sqlite3_value_dup(sqlite3_column_value(query.get(), column)), &sqlite3_value_free);
    }
  }
  return rows;
}

void insert(sqlite3_stmt* statement, const Row& row, std::int64_t key) {
  sqlite3_bind_int64(statement, 1, key);
  for (std::size_t column = 1; column < row.size(); ++column) {
    sqlite3_bind_value(statement, static_cast<int>(column) + 1, row[column].get());
  }
  sqlite3_step(statement);
  sqlite3_reset(statement);
}

void run(sqlite3_stmt* statement) {
  sqlite3_step(statement);
  sqlite3_reset(statement);
}

void BM_StoreAppend(benchmark::State& state) {
  static const auto moments = someHours();
  const TemporaryFolder folder;
  PowerSessionStore store("0.9.4", folder.path() / "append.store");
  const auto session = startSession(store);
  std::size_t index = 0;
  for (auto _ : state) {
    const auto& moment = moments[index++ % moments.size()];
    benchmark::DoNotOptimize(store.appendSample(session, moment.state, moment.activities, moment.telemetry));
  }
}
BENCHMARK(BM_StoreAppend)->Iterations(30'000);

void BM_StoreAppendFloor(benchmark::State& state) {
  const Bare day(RecordedDay::shared().path());
  const auto columns = rowsOf(day, "PowerSessionSample", 7200);
  const auto blobs = rowsOf(day, "SampleBlobs", 7200);
  const TemporaryFolder folder;
  {
    const PowerSessionStore schema("0.9.4", folder.path() / "floor.store");
  }
  const Bare database(folder.path() / "floor.store");
  database.execute(
      "PRAGMA synchronous = NORMAL; PRAGMA wal_autocheckpoint = 256; PRAGMA journal_size_limit = 4194304;"
      "PRAGMA cell_size_check = ON");
  const auto begin = database.prepare("BEGIN IMMEDIATE");
  const auto insertColumns =
      database.prepare("INSERT INTO PowerSessionSample VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
  const auto insertBlobs = database.prepare("INSERT INTO SampleBlobs VALUES (?,?,?,?)");
  const auto commit = database.prepare("COMMIT");
  std::int64_t key = std::int64_t{1} << 32;
  for (auto _ : state) {
    const auto index = static_cast<std::size_t>(key) % columns.size();
    run(begin.get());
    insert(insertColumns.get(), columns[index], key);
    insert(insertBlobs.get(), blobs[index], key);
    run(commit.get());
    ++key;
  }
}
BENCHMARK(BM_StoreAppendFloor)->Iterations(30'000);

void BM_StoreScanDay(benchmark::State& state) {
  PowerSessionStore store("0.9.4", RecordedDay::shared().path());
  const auto session = store.sessions().at(0);
  for (auto _ : state) {
    auto cursor = store.scan(*session);
    double watts = 0;
    std::size_t contributions = 0;
    while (cursor->next()) {
      watts += cursor->columns().totalWatts.value_or(0);
      if (const auto facts = cursor->facts()) contributions += facts->contributions.size();
    }
    benchmark::DoNotOptimize(watts);
    benchmark::DoNotOptimize(contributions);
  }
  state.counters["file bytes a sample"] =
      static_cast<double>(std::filesystem::file_size(RecordedDay::shared().path())) / GeneratedDay::length;
}
BENCHMARK(BM_StoreScanDay)->Unit(benchmark::kMillisecond);

void BM_StoreScanDayFloor(benchmark::State& state) {
  const Bare database(RecordedDay::shared().path());
  const auto query = database.prepare(
      "SELECT key, id, timestamp, elapsedSeconds, totalWatts, batteryPercent, acConnected, thermalPressure, "
      "maxFanRPM, "
      "maxTemperature, createdAt FROM PowerSessionSample ORDER BY key");
  for (auto _ : state) {
    double sum = 0;
    while (sqlite3_step(query.get()) == SQLITE_ROW) {
      for (int column = 2; column < sqlite3_column_count(query.get()); ++column) {
        if (sqlite3_column_type(query.get(), column) != SQLITE_NULL)
          sum += sqlite3_column_double(query.get(), column);
      }
      benchmark::DoNotOptimize(sqlite3_column_blob(query.get(), 1));
    }
    sqlite3_reset(query.get());
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_StoreScanDayFloor)->Unit(benchmark::kMillisecond);

void BM_StoreReadSnapshotsOfDay(benchmark::State& state) {
  PowerSessionStore store("0.9.4", RecordedDay::shared().path());
  const auto session = store.sessions().at(0);
  std::size_t bytes = 0;
  for (auto _ : state) {
    auto cursor = store.scan(*session);
    while (cursor->next()) bytes += cursor->blobs().snapshotData.size();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}
BENCHMARK(BM_StoreReadSnapshotsOfDay)->Unit(benchmark::kMillisecond);

void BM_StoreOpenAndListThousandSessions(benchmark::State& state) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "sessions.store";
  {
    PowerSessionStore store("0.9.4", path);
    GeneratedDay day;
    for (int index = 0; index < 1000; ++index) {
      const auto session = store.start("session " + std::to_string(index), PowerSessionSource::app, 1,
                                       midnight + Seconds(index));
      for (int sample = 0; sample < 10; ++sample)
        store.appendSample(session, day.next().state, {}, std::nullopt);
      store.stop(session, midnight + Seconds(index + 10));
    }
  }
  for (auto _ : state) {
    PowerSessionStore store("0.9.4", path);
    benchmark::DoNotOptimize(store.sessions());
  }
}
BENCHMARK(BM_StoreOpenAndListThousandSessions)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quellin
