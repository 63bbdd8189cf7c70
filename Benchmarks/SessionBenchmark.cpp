// Recording, summarising and exporting sessions, over a made-up day of 86,400 samples. The store lies in a
// file of its own in the system's temporary folder.
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::GeneratedDay;

struct RecordedDay {
  testing_support::TemporaryFolder folder;
  PowerSessionStore store{"0.9.4", folder.path() / "day.store"};
  std::shared_ptr<PowerSession> session;
};

// One day for all benchmarks: making it takes longer than measuring what is done with it.
RecordedDay& recordedDay() {
  static const auto day = [] {
    auto made = std::make_unique<RecordedDay>();
    GeneratedDay generated;
    auto moment = generated.next();
    made->session = made->store.start("Day", PowerSessionSource::cli, 1, moment.state.timestamp);
    for (std::int64_t second = 0; second < GeneratedDay::length; ++second) {
      made->store.appendSample(made->session, moment.state, moment.activities, moment.telemetry);
      moment = generated.next();
    }
    return made;
  }();
  return *day;
}

// The floor of a summary: the scalar columns alone, each row checked.
void scanColumns(benchmark::State& state) {
  RecordedDay& day = recordedDay();
  for (auto _ : state) {
    double sum = 0;
    auto cursor = day.store.scan(*day.session);
    while (cursor && cursor->next()) sum += cursor->columns().totalWatts.value_or(0);
    benchmark::DoNotOptimize(sum);
  }
}

void summarise(benchmark::State& state) {
  RecordedDay& day = recordedDay();
  for (auto _ : state) {
    const auto summary = day.store.summary(day.session);
    if (summary.sampleCount != GeneratedDay::length) throw std::runtime_error("samples are missing");
  }
}

void exportDay(benchmark::State& state) {
  RecordedDay& day = recordedDay();
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    day.store.exportJSONL(day.session, instantAt(0), [&](std::string_view piece) { bytes += piece.size(); });
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["documentMB"] = static_cast<double>(bytes) / 1e6;
}

// The floor of an export: the blobs alone, read back.
void readBlobs(benchmark::State& state) {
  RecordedDay& day = recordedDay();
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    auto cursor = day.store.scan(*day.session);
    while (cursor && cursor->next()) {
      const SampleBlobs blobs = cursor->blobs();
      bytes += blobs.snapshotData.size() + blobs.processActivityData.value_or("").size() +
               blobs.proTelemetryData.value_or("").size();
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

// A recorder that finds a whole day recorded before.
void resume(benchmark::State& state) {
  RecordedDay& day = recordedDay();
  const auto executor = std::make_shared<ThreadExecutor>();
  const std::shared_ptr<PowerSessionStore> store(std::shared_ptr<void>(), &day.store);
  for (auto _ : state) {
    PowerSessionRecorder recorder(executor, store, Seconds{10});
    if (recorder.activeSummary().sampleCount != GeneratedDay::length) {
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

constexpr std::size_t recordedStates = 4000;

void appendOnly(benchmark::State& state) {
  const auto states = firstStates(recordedStates);
  PowerSessionStore store("0.9.4", std::nullopt, true);
  const auto session = store.start("Test", PowerSessionSource::cli, 1, states.front().timestamp);
  std::size_t next = 0;
  for (auto _ : state) {
    store.appendSample(session, states.at(next % recordedStates), {}, std::nullopt);
    ++next;
  }
}

void record(benchmark::State& state) {
  const auto states = firstStates(recordedStates);
  const auto executor = std::make_shared<ThreadExecutor>();
  PowerSessionRecorder recorder(executor, std::make_shared<PowerSessionStore>("0.9.4", std::nullopt, true),
                                Seconds{10});
  recorder.start("Test", PowerSessionSource::cli, 1, states.front().timestamp);
  // Telemetry that is available stands in for the measurement of processes.
  const std::optional<ProTelemetrySnapshot> telemetry = availableTelemetry();
  std::size_t next = 0;
  for (auto _ : state) {
    recorder.record(states.at(next % recordedStates), telemetry);
    ++next;
  }
}

BENCHMARK(scanColumns)->Name("Session/scanColumns")->Unit(benchmark::kMillisecond);
BENCHMARK(summarise)->Name("Session/summary")->Unit(benchmark::kMillisecond);
BENCHMARK(resume)->Name("Session/resume")->Unit(benchmark::kMillisecond);
BENCHMARK(readBlobs)->Name("Session/readBlobs")->Unit(benchmark::kMillisecond);
BENCHMARK(exportDay)->Name("Session/export")->Unit(benchmark::kMillisecond);
BENCHMARK(appendOnly)->Name("Session/append");
BENCHMARK(record)->Name("Session/record");

}  // namespace
}  // namespace quellin
