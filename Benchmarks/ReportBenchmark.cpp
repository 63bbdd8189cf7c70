// What a report embeds: one walk over a whole session, and its columns as JSON.
#include <string>

#include <benchmark/benchmark.h>

#include "QuellinCore/Sessions/Analysis/SessionAnalysis.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "RecordedSession.h"

namespace quellin {
namespace {

using benchmarks::RecordedSession;
using testing_support::GeneratedDay;

void report(benchmark::State& state) {
  PowerSessionStore store("0.9.4", RecordedSession::ofLength(state.range(0)).path());
  const auto session = store.sessions().at(0);
  std::string data;
  for (auto _ : state) {
    data = encodeJSON(analyseSession(store, session)).value();
    benchmark::DoNotOptimize(data.data());
  }
  state.counters["documentMB"] = static_cast<double>(data.size()) / 1e6;
}

constexpr auto unit = benchmark::kMillisecond;
BENCHMARK(report)->Name("Session/report")->Arg(3600)->Arg(GeneratedDay::length)->Unit(unit);

}  // namespace
}  // namespace quellin
