#include <cstdint>
#include <functional>
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

std::vector<TemperatureSensor> sensorList(std::int64_t count) {
  std::vector<TemperatureSensor> sensors;
  const std::vector<std::string> names{
      "PMU tdie",     "PMU tdev",       "gas gauge battery", "NAND CH0 temp", "CPU Efficiency Core ",
      "Memory Bank ", "Palm Rest Left", "Airflow Right ",    "WiFi Module",   "SOC MTR Temp Sensor "};
  for (std::int64_t index = 0; index < count; ++index) {
    const auto number = std::to_string(index);
    sensors.push_back({"Tx" + number, names[static_cast<std::size_t>(index) % names.size()] + number,
                       30.0 + static_cast<double>(index % 60)});
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
BENCHMARK(derivedReadings)->Name("Readings/derived");

void dashboardReadings(benchmark::State& run) {
  const auto sensors = sensorList(run.range(0));
  for (auto _ : run) benchmark::DoNotOptimize(TemperatureInsights::dashboardReadings(sensors, std::nullopt));
}
BENCHMARK(dashboardReadings)->Name("Readings/dashboard")->Arg(15)->Arg(60)->Arg(240);

void representativeReading(benchmark::State& run) {
  const auto sensors = sensorList(run.range(0));
  for (auto _ : run)
    benchmark::DoNotOptimize(TemperatureInsights::representativeReading(sensors, std::nullopt));
}
BENCHMARK(representativeReading)->Name("Readings/representative")->Arg(60);

void hidTemperatures(benchmark::State& run) {
  std::vector<HIDTemperatureService> services;
  for (const auto& sensor : sensorList(run.range(0))) services.push_back({sensor.name, sensor.temperature});
  for (auto _ : run) benchmark::DoNotOptimize(plausibleTemperatures(services));
}
BENCHMARK(hidTemperatures)->Name("Readings/temperatures")->Arg(15)->Arg(60)->Arg(240);

std::vector<EnergyChannel> energyChannels(std::int64_t count) {
  std::vector<EnergyChannel> channels{{"GPU Energy", 40'000'000}, {"DRAM0", 30'000'000}};
  while (channels.size() < static_cast<std::size_t>(count)) {
    channels.push_back({"EACC_CPU" + std::to_string(channels.size()) + "_SRAM", 1'000'000});
  }
  return channels;
}

void energyDelta(benchmark::State& run) {
  const auto channels = energyChannels(run.range(0));
  for (auto _ : run) benchmark::DoNotOptimize(parseEnergyDelta(channels, Seconds{0.1}));
}
BENCHMARK(energyDelta)->Name("Readings/energy")->Arg(136)->Arg(565)->Arg(2260);

// Every name looked at once, every amount added.
void energyDeltaFloor(benchmark::State& run) {
  const auto channels = energyChannels(run.range(0));
  for (auto _ : run) {
    std::size_t letters = 0;
    std::int64_t sum = 0;
    for (const auto& channel : channels) {
      letters += std::hash<std::string>{}(channel.name);
      sum += channel.nanojoules;
    }
    benchmark::DoNotOptimize(letters);
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(energyDeltaFloor)->Name("Readings/energy/floor")->Arg(565);

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
BENCHMARK(batteryMerge)->Name("Readings/battery");

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
BENCHMARK(rankedProcesses)
    ->Name("Processes/rank")
    ->Arg(500)
    ->Arg(2000)
    ->Arg(8000)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quellin
