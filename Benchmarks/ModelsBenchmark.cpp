#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "QuellinCore/Models/BatteryRules.h"
#include "QuellinCore/Models/EnergyDelta.h"
#include "QuellinCore/Models/HIDTemperatures.h"
#include "QuellinCore/Models/ProcessActivity.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Models/TemperatureInsights.h"

namespace quellin {
namespace {

constexpr int sensorCount = 60;

std::vector<TemperatureSensor> sixtySensors() {
  std::vector<TemperatureSensor> sensors;
  const std::vector<std::string> names{
      "PMU tdie",     "PMU tdev",       "gas gauge battery", "NAND CH0 temp", "CPU Efficiency Core ",
      "Memory Bank ", "Palm Rest Left", "Airflow Right ",    "WiFi Module",   "SOC MTR Temp Sensor "};
  for (int index = 0; index < sensorCount; ++index) {
    const auto number = std::to_string(index);
    sensors.push_back(
        {"Tx" + number, names[static_cast<std::size_t>(index) % names.size()] + number, 30.0 + index});
  }
  return sensors;
}

SystemPowerState stateOnBattery() {
  SystemPowerState state;
  state.battery.emplace();
  state.battery->wattage = -12.5;
  state.power.emplace();
  state.power->systemPower = 4;
  return state;
}

void derivedReadings(benchmark::State& run) {
  SystemPowerState state = stateOnBattery();
  for (auto _ : run) {
    benchmark::DoNotOptimize(state);
    benchmark::DoNotOptimize(state.batteryTerminalWatts());
    benchmark::DoNotOptimize(state.batteryDischargeWatts());
    benchmark::DoNotOptimize(state.batteryChargeInputWatts());
    benchmark::DoNotOptimize(state.batterySupplementWatts());
    benchmark::DoNotOptimize(state.siliconWatts());
    benchmark::DoNotOptimize(state.displayAndOtherPower());
    benchmark::DoNotOptimize(state.primaryPowerReading());
  }
}
BENCHMARK(derivedReadings);

void dashboardReadings(benchmark::State& run) {
  const auto sensors = sixtySensors();
  for (auto _ : run) benchmark::DoNotOptimize(TemperatureInsights::dashboardReadings(sensors, std::nullopt));
}
BENCHMARK(dashboardReadings);

void representativeReading(benchmark::State& run) {
  const auto sensors = sixtySensors();
  for (auto _ : run)
    benchmark::DoNotOptimize(TemperatureInsights::representativeReading(sensors, std::nullopt));
}
BENCHMARK(representativeReading);

void hidTemperatures(benchmark::State& run) {
  std::vector<HIDTemperatureService> services;
  for (const auto& sensor : sixtySensors()) services.push_back({sensor.name, sensor.temperature});
  for (auto _ : run) benchmark::DoNotOptimize(plausibleTemperatures(services));
}
BENCHMARK(hidTemperatures);

void energyDelta(benchmark::State& run) {
  std::vector<EnergyChannel> channels{{"GPU Energy", 40'000'000}, {"DRAM0", 30'000'000}};
  while (channels.size() < static_cast<std::size_t>(run.range(0))) {
    channels.push_back({"EACC_CPU" + std::to_string(channels.size()) + "_SRAM", 1'000'000});
  }
  for (auto _ : run) benchmark::DoNotOptimize(parseEnergyDelta(channels, Seconds{0.1}));
}
BENCHMARK(energyDelta)->Arg(136)->Arg(565);

void batteryMerge(benchmark::State& run) {
  BatteryTables tables{.registry = PropertyTable{}, .powerSource = PropertyTable{}};
  for (int index = 0; index < 60; ++index)
    tables.registry->set("Unrelated" + std::to_string(index), std::int64_t{index});
  for (const char* key : {"AppleRawCurrentCapacity", "AppleRawMaxCapacity", "DesignCapacity", "Voltage"}) {
    tables.registry->set(key, std::int64_t{5000});
  }
  tables.registry->set("Amperage", std::int64_t{-1500});
  for (auto _ : run) benchmark::DoNotOptimize(batteryInfo(tables));
}
BENCHMARK(batteryMerge);

void rankedProcesses(benchmark::State& run) {
  ProcessSamples before;
  ProcessSamples after;
  for (std::int32_t pid = 1; pid <= run.range(0); ++pid) {
    ProcessSample sample;
    sample.pid = pid;
    sample.name = "process";
    before[pid] = sample;
    sample.cpuTimeNanoseconds = pid % 20 == 0 ? 50'000'000 : 0;
    after[pid] = sample;
  }
  for (auto _ : run) benchmark::DoNotOptimize(processActivity(before, after, Seconds{0.35}));
}
BENCHMARK(rankedProcesses)->Arg(2000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quellin
