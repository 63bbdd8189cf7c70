#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include <benchmark/benchmark.h>
#include <expat.h>

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
BENCHMARK(readPropertyLists)
    ->Name("PropertyLists/read")
    ->Args({1, 1600})
    ->Args({40, 40})
    ->Unit(benchmark::kMillisecond);

// The XML parser alone, with nobody listening.
void parseBare(benchmark::State& state) {
  const std::string stream = PowermetricsStream::make(1, static_cast<int>(state.range(0)));
  const std::string_view document{stream.data(), std::min(stream.size(), stream.find('\0'))};
  for (auto _ : state) {
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser{
        XML_ParserCreate(nullptr), &XML_ParserFree};
    if (XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE) == 0) {
      state.SkipWithError("the stream is damaged");
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.size()));
}
BENCHMARK(parseBare)->Name("PropertyLists/read/floor")->Arg(1600)->Unit(benchmark::kMillisecond);

// All of what the tool does with the output: reading, rows, powers, ranking.
void makeSnapshot(benchmark::State& state) {
  const std::string stream =
      PowermetricsStream::make(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) benchmark::DoNotOptimize(snapshotFromOutput(stream));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}
BENCHMARK(makeSnapshot)
    ->Name("PropertyLists/snapshot")
    ->Args({1, 1600})
    ->Args({40, 40})
    ->Args({1, 400})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quellin
