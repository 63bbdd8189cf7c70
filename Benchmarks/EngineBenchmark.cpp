// What one poll of the live engine costs over a machine that answers at once: every known sensor, 2 fans,
// battery, energy. The wait of 0.1 s between two energy samples is left out. Floor: copying such a state,
// which publishing cannot avoid.

#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "AllocationCount.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Platform/Recorded/RecordedSources.h"
#include "QuellinCore/Platform/Recorded/TracePlayer.h"
#include "QuellinCore/Services/MetricsEngine.h"
#include "QuellinCore/Services/SystemReader.h"
#include "Support/FakeHost.h"
#include "Support/ManualBackground.h"
#include "Support/ManualClock.h"

namespace quellin {
namespace {

using benchmarks::allocationCount;
using testing_support::FakeBatterySource;
using testing_support::FakeEnergySource;
using testing_support::FakeHIDSensorSource;
using testing_support::FakeThermalSource;
using testing_support::ManualBackground;
using testing_support::ManualMonotonicClock;

std::shared_ptr<VirtualSMC> fullSMC() {
  auto smc = std::make_shared<VirtualSMC>();
  smc->set("FNum", "ui8 ", {2});
  for (const std::string fan : {"F0", "F1"}) {
    for (const char* value : {"Ac", "Mn", "Mx"}) smc->set(fan + value, "flt ", {0x00, 0x50, 0x9A, 0x44});
  }
  for (const auto& [key, name] : TemperatureSensor::knownSensors())
    smc->set(key, "flt ", {0x00, 0x00, 0x36, 0x42});
  return smc;
}

/// A reader of sources that answer at once; the clock it sleeps on costs nothing.
struct InstantMachine {
  ManualMonotonicClock clock;
  std::shared_ptr<FakeBatterySource> battery = std::make_shared<FakeBatterySource>();
  std::shared_ptr<FakeEnergySource> energy = std::make_shared<FakeEnergySource>();
  SystemReader reader;

  InstantMachine() {
    battery->tables.registry = PropertyTable{{"CurrentCapacity", std::int64_t{80}},
                                             {"AppleRawMaxCapacity", std::int64_t{5000}},
                                             {"AppleRawCurrentCapacity", std::int64_t{4000}},
                                             {"Voltage", std::int64_t{12600}},
                                             {"Amperage", std::int64_t{-900}},
                                             {"ExternalConnected", false}};
    energy->gain = std::vector<EnergyChannel>{{"CPU Energy", 1'000}, {"GPU Energy", 2'000}, {"DRAM0", 3'000}};
    reader = {.batteryService = BatteryService{battery},
              .thermalService = ThermalService{std::make_shared<FakeThermalSource>()},
              .powerService = PowerService{energy, clock},
              .smcService = SMCService{fullSMC()},
              .privilegedSMCHelperService = PrivilegedSMCHelperService{"/nonexistent"},
              .hidSensorService = HIDSensorService{std::make_shared<FakeHIDSensorSource>()}};
  }
};

void countAllocations(benchmark::State& state, std::size_t before) {
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(allocationCount() - before), benchmark::Counter::kAvgIterations);
}

// Polls again and again; `before` is called ahead of each.
template <class Reader, class Before>
void poll(benchmark::State& state, Reader read, Before before) {
  const auto executor = std::make_shared<ThreadExecutor>();
  const auto controls = std::make_shared<ManualBackground::Controls>();
  MetricsEngine engine{executor, Seconds{1}, 60, read, std::make_unique<ManualBackground>(controls)};
  engine.start();
  const std::size_t allocations = allocationCount();
  for (auto _ : state) {
    before();
    controls->advance(Seconds{1});
    while (!controls->runOne()) executor->runPosted();
    while (controls->pendingAlarms().empty()) executor->runPosted();
  }
  countAllocations(state, allocations);
}

void enginePoll(benchmark::State& state) {
  InstantMachine machine;
  poll(state, [&] { return machine.reader.readAll(); }, [&] { machine.clock.sleeps.clear(); });
}
BENCHMARK(enginePoll)->Name("Engine/poll");

// The same over the first tick of the example: 40 temperatures, 2 fans, battery, energy.
void enginePollOfTrace(benchmark::State& state) {
  const auto player = TracePlayer::open(QUELLIN_EXAMPLES "/macbook.trace.jsonl");
  if (!player) return state.SkipWithError(player.error().message().c_str());
  const SystemReader reader =
      SystemReader::over(recordedSources(*player), PrivilegedSMCHelperService{"/nonexistent"},
                         (*player)->monotonicClock(), (*player)->wallClock());
  poll(state, [&] { return reader.readAll(); }, [] {});
}
BENCHMARK(enginePollOfTrace)->Name("Engine/pollOfTrace");

void stateCopy(benchmark::State& state) {
  const SystemPowerState snapshot = InstantMachine{}.reader.readAll();
  const std::size_t before = allocationCount();
  for (auto _ : state) {
    SystemPowerState copy = snapshot;
    benchmark::DoNotOptimize(copy);
  }
  countAllocations(state, before);
}
BENCHMARK(stateCopy)->Name("Engine/poll/floor");

}  // namespace
}  // namespace quellin
