#include <benchmark/benchmark.h>

#include "PowermetricsStream.h"
#include "QuellinHelper/PowermetricsSnapshot.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"

namespace quellin {
namespace {

using benchmarks::PowermetricsStream;

// 4 MB each: one sample of many rows, and many samples.
void readPropertyLists(benchmark::State& state) {
  const std::string stream =
      PowermetricsStream::make(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) benchmark::DoNotOptimize(parsePropertyListStream(stream));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}
BENCHMARK(readPropertyLists)->Args({1, 1600})->Args({40, 40})->Unit(benchmark::kMillisecond);

// All of what the tool does with the output: reading, rows, powers, ranking.
void makeSnapshot(benchmark::State& state) {
  const std::string stream =
      PowermetricsStream::make(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) benchmark::DoNotOptimize(snapshotFromOutput(stream));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}
BENCHMARK(makeSnapshot)->Args({1, 1600})->Args({40, 40})->Args({1, 400})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quellin
