// Recording, summarising and exporting sessions of different lengths, one sample a second. Floors: what
// SQLite alone takes to read the same rows; and copying the document, for the export.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "BareDatabase.h"
#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "RecordedSession.h"

namespace quellin {
namespace {

using benchmarks::BareDatabase;
using benchmarks::RecordedSession;
using testing_support::GeneratedDay;

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = GeneratedDay::length;

// An opened store and its session.
struct OpenSession {
  explicit OpenSession(std::int64_t samples)
      : store("0.9.4", RecordedSession::ofLength(samples).path()), session(store.sessions().at(0)) {}

  [[nodiscard]] std::string document() {
    std::string text;
    store.exportJSONL(session, instantAt(0), [&](std::string_view piece) { text += piece; });
    return text;
  }

  PowerSessionStore store;
  std::shared_ptr<PowerSession> session;
};

void summarise(benchmark::State& state) {
  OpenSession opened{state.range(0)};
  for (auto _ : state) {
    const auto summary = opened.store.summary(opened.session);
    if (summary.sampleCount != state.range(0)) throw std::runtime_error("samples are missing");
  }
  state.counters["file bytes a sample"] =
      static_cast<double>(std::filesystem::file_size(RecordedSession::ofLength(state.range(0)).path())) /
      static_cast<double>(state.range(0));
}

// Every number of every row, added.
void summariseFloor(benchmark::State& state) {
  const BareDatabase database(RecordedSession::ofLength(state.range(0)).path());
  const auto query = database.prepare(
      "SELECT key, id, timestamp, elapsedSeconds, totalWatts, batteryPercent, acConnected, thermalPressure, "
      "maxFanRPM, maxTemperature, createdAt FROM PowerSessionSample ORDER BY key");
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

void exportSession(benchmark::State& state) {
  OpenSession opened{state.range(0)};
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    opened.store.exportJSONL(opened.session, instantAt(0),
                             [&](std::string_view piece) { bytes += piece.size(); });
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["documentMB"] = static_cast<double>(bytes) / 1e6;
}

void exportFloor(benchmark::State& state) {
  const std::string document = OpenSession{state.range(0)}.document();
  const BareDatabase database(RecordedSession::ofLength(state.range(0)).path());
  const auto query = database.prepare("SELECT * FROM SampleBlobs ORDER BY key");
  std::array<char, 65536> buffer;
  for (auto _ : state) {
    while (sqlite3_step(query.get()) == SQLITE_ROW) {
      for (int column = 1; column < sqlite3_column_count(query.get()); ++column) {
        benchmark::DoNotOptimize(sqlite3_column_blob(query.get(), column));
      }
    }
    sqlite3_reset(query.get());
    for (std::size_t done = 0; done < document.size(); done += buffer.size()) {
      std::memcpy(buffer.data(), document.data() + done, std::min(buffer.size(), document.size() - done));
      benchmark::DoNotOptimize(buffer);
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}

// The samples as lines of JSON in memory, each read and written by a common library.
void exportInstead(benchmark::State& state) {
  const std::string document = OpenSession{state.range(0)}.document();
  for (auto _ : state) {
    for (std::size_t start = 0, end = 0; (end = document.find('\n', start)) != std::string::npos;
         start = end + 1) {
      const auto line = nlohmann::json::parse(std::string_view{document}.substr(start, end - start));
      benchmark::DoNotOptimize(line.dump());
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}

// A recorder that finds a whole session recorded before.
void resume(benchmark::State& state) {
  OpenSession opened{state.range(0)};
  const auto executor = std::make_shared<ThreadExecutor>();
  const std::shared_ptr<PowerSessionStore> store(std::shared_ptr<void>(), &opened.store);
  for (auto _ : state) {
    PowerSessionRecorder recorder(executor, store, Seconds{10});
    if (recorder.activeSummary().sampleCount != state.range(0)) {
      throw std::runtime_error("samples are missing");
    }
  }
}

std::vector<SystemPowerState> firstStates(std::size_t count) {
  GeneratedDay generated;
  std::vector<SystemPowerState> states;
  while (states.size() < count) states.push_back(generated.next().state);
  return states;
}

ProTelemetrySnapshot availableTelemetry() {
  ProTelemetrySnapshot snapshot;
  snapshot.isAvailable = true;
  return snapshot;
}

// One reading through the recorder into a store in memory.
void record(benchmark::State& state) {
  const auto states = firstStates(hour);
  const auto executor = std::make_shared<ThreadExecutor>();
  PowerSessionRecorder recorder(executor, std::make_shared<PowerSessionStore>("0.9.4", std::nullopt, true),
                                Seconds{10});
  recorder.start("Test", PowerSessionSource::cli, 1, states.front().timestamp);
  // Telemetry that is available stands in for the measurement of processes.
  const std::optional<ProTelemetrySnapshot> telemetry = availableTelemetry();
  std::size_t next = 0;
  for (auto _ : state) {
    recorder.record(states[next % states.size()], telemetry);
    ++next;
  }
}

// The same readings handed to a store in memory without a recorder.
void recordFloor(benchmark::State& state) {
  const auto states = firstStates(hour);
  PowerSessionStore store("0.9.4", std::nullopt, true);
  const auto session = store.start("Test", PowerSessionSource::cli, 1, states.front().timestamp);
  std::size_t next = 0;
  for (auto _ : state) {
    store.appendSample(session, states[next % states.size()], {}, std::nullopt);
    ++next;
  }
}

constexpr auto unit = benchmark::kMillisecond;
BENCHMARK(summarise)->Name("Session/summary")->Arg(hour)->Arg(6 * hour)->Arg(day)->Unit(unit);
BENCHMARK(summariseFloor)->Name("Session/summary/floor")->Arg(hour)->Arg(day)->Unit(unit);
BENCHMARK(resume)->Name("Session/resume")->Arg(hour)->Arg(6 * hour)->Arg(day)->Unit(unit);
BENCHMARK(exportSession)->Name("Session/export")->Arg(hour)->Arg(6 * hour)->Arg(day)->Unit(unit);
BENCHMARK(exportFloor)->Name("Session/export/floor")->Arg(hour)->Unit(unit);
BENCHMARK(exportInstead)->Name("Session/export/instead")->Arg(hour)->Unit(unit);
BENCHMARK(record)->Name("Session/record");
BENCHMARK(recordFloor)->Name("Session/record/floor");

}  // namespace
}  // namespace quellin
