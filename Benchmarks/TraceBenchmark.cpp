#include <cstdint>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include "QuellinCore/Platform/Recorded/RecordedSources.h"
#include "QuellinCore/Platform/Recorded/TraceCoding.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"

namespace quellin {
namespace {

constexpr const char* example = QUELLIN_EXAMPLES "/macbook.trace.jsonl";

// Reads every tick of the example into answers.
void readTrace(benchmark::State& state) {
  std::int64_t ticks = 0;
  for (auto _ : state) {
    auto reader = TraceReader::open(example);
    while (reader && reader->next().value()) ++ticks;
  }
  state.SetItemsProcessed(ticks);
}
BENCHMARK(readTrace)->Name("Trace/read")->Unit(benchmark::kMillisecond);

// Its lines, parsed and thrown away.
template <class Parse>
void readLines(benchmark::State& state, Parse parse) {
  for (auto _ : state) {
    std::ifstream file{example};
    for (std::string line; std::getline(file, line);) parse(line);
  }
}

void readTraceFloor(benchmark::State& state) {
  simdjson::dom::parser parser;
  readLines(state, [&](const std::string& line) { benchmark::DoNotOptimize(parser.parse(line).error()); });
}
BENCHMARK(readTraceFloor)->Name("Trace/read/floor")->Unit(benchmark::kMillisecond);

void readTraceInstead(benchmark::State& state) {
  readLines(state, [](const std::string& line) { benchmark::DoNotOptimize(nlohmann::json::parse(line)); });
}
BENCHMARK(readTraceInstead)->Name("Trace/read/instead")->Unit(benchmark::kMillisecond);

// Plays the example at full speed and asks every source once at each tick.
void playTrace(benchmark::State& state) {
  std::int64_t ticks = 0;
  for (auto _ : state) {
    const auto player = TracePlayer::open(example).value();
    const PlatformSources sources = recordedSources(player);
    while (!player->atEnd()) {
      benchmark::DoNotOptimize(sources.smc->open());
      benchmark::DoNotOptimize(sources.hid->temperatureServices());
      benchmark::DoNotOptimize(sources.battery->read());
      benchmark::DoNotOptimize(sources.energy->begin()->finish());
      benchmark::DoNotOptimize(sources.thermal->read());
      benchmark::DoNotOptimize(sources.processes->beginScan());
      ++ticks;
      if (!player->advance()) state.SkipWithError("the example is damaged");
    }
  }
  state.SetItemsProcessed(ticks);
}
BENCHMARK(playTrace)->Name("Trace/play")->Unit(benchmark::kMillisecond);

// Writes one tick of the example as a line.
void writeTick(benchmark::State& state) {
  auto reader = TraceReader::open(example).value();
  const HostAnswers answers = reader.next().value().value();
  for (auto _ : state) benchmark::DoNotOptimize(tickLine(answers, SerialNumbers::redacted));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(writeTick)->Name("Trace/write")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quellin
