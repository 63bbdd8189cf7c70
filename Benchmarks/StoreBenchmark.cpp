// Writing the session store, and listing what is in it. Floors: what SQLite alone takes for the same bytes
// with the same settings.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "BareDatabase.h"
#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "RecordedSession.h"

namespace quellin {
namespace {

using benchmarks::BareDatabase;
using benchmarks::RecordedSession;
using testing_support::GeneratedDay;
using testing_support::TemporaryFolder;

constexpr Instant midnight = instantAt(1741046400);
constexpr std::size_t twoHours = 7200;

std::vector<GeneratedDay::Moment> moments() {
  std::vector<GeneratedDay::Moment> moments;
  GeneratedDay day;
  while (moments.size() < twoHours) moments.push_back(day.next());
  return moments;
}

void append(benchmark::State& state) {
  const auto given = moments();
  const TemporaryFolder folder;
  PowerSessionStore store("0.9.4", folder.path() / "append.store");
  const auto session = store.start("Append", PowerSessionSource::cli, 1, midnight);
  std::size_t index = 0;
  for (auto _ : state) {
    const auto& moment = given[index++ % given.size()];
    benchmark::DoNotOptimize(store.appendSample(session, moment.state, moment.activities, moment.telemetry));
  }
}

void appendFloor(benchmark::State& state) {
  const BareDatabase recorded(RecordedSession::ofLength(twoHours).path());
  const auto columns = recorded.rows("PowerSessionSample", twoHours);
  const auto blobs = recorded.rows("SampleBlobs", twoHours);
  const TemporaryFolder folder;
  {
    const PowerSessionStore schema("0.9.4", folder.path() / "floor.store");
  }
  const BareDatabase database(folder.path() / "floor.store");
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
    BareDatabase::run(begin.get());
    BareDatabase::insert(insertColumns.get(), columns[index], key);
    BareDatabase::insert(insertBlobs.get(), blobs[index], key);
    BareDatabase::run(commit.get());
    ++key;
  }
}

std::vector<std::string> exportedLines() {
  std::string document;
  PowerSessionStore store("0.9.4", RecordedSession::ofLength(twoHours).path());
  store.exportJSONL(store.sessions().at(0), midnight, [&](std::string_view piece) { document += piece; });
  std::vector<std::string> lines;
  for (std::size_t start = 0, end = 0; (end = document.find('\n', start)) != std::string::npos;
       start = end + 1) {
    lines.push_back(document.substr(start, end - start));
  }
  return lines;
}

// Each sample as text in a table, with the settings that SQLite comes with.
void appendAsText(benchmark::State& state) {
  const auto lines = exportedLines();
  const TemporaryFolder folder;
  const BareDatabase database(folder.path() / "text.store");
  database.execute("CREATE TABLE Sample (key INTEGER PRIMARY KEY, line TEXT)");
  const auto insert = database.prepare("INSERT INTO Sample (line) VALUES (?)");
  std::size_t index = 0;
  for (auto _ : state) {
    const std::string& line = lines[index++ % lines.size()];
    sqlite3_bind_text(insert.get(), 1, line.data(), static_cast<int>(line.size()), SQLITE_STATIC);
    BareDatabase::run(insert.get());
  }
}

class ManySessions {
 public:
  explicit ManySessions(std::int64_t count) : path_(folder_.path() / "sessions.store") {
    PowerSessionStore store("0.9.4", path_);
    GeneratedDay day;
    for (std::int64_t index = 0; index < count; ++index) {
      const auto session = store.start("session " + std::to_string(index), PowerSessionSource::app, 1,
                                       midnight + Seconds(index));
      for (int sample = 0; sample < 10; ++sample) {
        store.appendSample(session, day.next().state, {}, std::nullopt);
      }
      store.stop(session, midnight + Seconds(index + 10));
    }
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  TemporaryFolder folder_;
  std::filesystem::path path_;
};

void openAndList(benchmark::State& state) {
  const ManySessions sessions(state.range(0));
  for (auto _ : state) {
    PowerSessionStore store("0.9.4", sessions.path());
    benchmark::DoNotOptimize(store.sessions());
  }
}

void openAndListFloor(benchmark::State& state) {
  const ManySessions sessions(state.range(0));
  for (auto _ : state) {
    const BareDatabase database(sessions.path());
    benchmark::DoNotOptimize(database.rows("PowerSession", static_cast<std::size_t>(state.range(0))));
  }
}

BENCHMARK(append)->Name("Store/append")->Iterations(30'000);
BENCHMARK(appendFloor)->Name("Store/append/floor")->Iterations(30'000);
BENCHMARK(appendAsText)->Name("Store/append/instead")->Iterations(2'000);
BENCHMARK(openAndList)->Name("Store/list")->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(openAndListFloor)->Name("Store/list/floor")->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quellin
