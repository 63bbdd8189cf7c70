// Encoding and decoding of what travels and what is stored: the payloads of the privileged tool, and a record
// of the size and make-up of a stored sample. The rates are bytes of JSON. Floors: copying the text, and
// parsing it without making anything of it.
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include "QuellinCore/Models/HelperStatus.h"
#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

struct Battery {
  std::int64_t chargePercent = 81;
  std::int64_t currentCapacity = 4123;
  std::int64_t maxCapacity = 5088;
  double voltage = 12.482;
  double amperage = -0.913;
  double wattage = -11.396066;
  bool isCharging = false;
  std::optional<std::int64_t> timeRemaining = 271;
  std::string health = "Good";

  static constexpr auto fields() {
    return std::tuple{Field{"chargePercent", &Battery::chargePercent},
                      Field{"currentCapacity", &Battery::currentCapacity},
                      Field{"maxCapacity", &Battery::maxCapacity},
                      Field{"voltage", &Battery::voltage},
                      Field{"amperage", &Battery::amperage},
                      Field{"wattage", &Battery::wattage},
                      Field{"isCharging", &Battery::isCharging},
                      Field{"timeRemaining", &Battery::timeRemaining},
                      Field{"health", &Battery::health}};
  }
};

struct Sample {
  UUID id{UUID::Bytes{0xE6, 0x21, 0xE1, 0xF8, 0xC3, 0x6C, 0x49, 0x5A, 0x93, 0xFC, 0x0C, 0x24, 0x7A, 0x3E,
                      0x6E, 0x5F}};
  Instant timestamp = instantAt(1741081260);
  double elapsedSeconds = 86399.00123;
  std::optional<Battery> battery = Battery{};
  std::vector<TemperatureSensor> sensors;
  std::vector<ProProcessEnergy> processes;
  std::optional<double> totalWatts = 11.396066;
  std::optional<double> siliconWatts;
  std::string totalWattsConfidence = "batteryTerminal";

  static constexpr auto fields() {
    return std::tuple{Field{"id", &Sample::id},
                      Field{"timestamp", &Sample::timestamp},
                      Field{"elapsedSeconds", &Sample::elapsedSeconds},
                      Field{"battery", &Sample::battery},
                      Field{"sensors", &Sample::sensors},
                      Field{"processes", &Sample::processes},
                      Field{"totalWatts", &Sample::totalWatts},
                      Field{"siliconWatts", &Sample::siliconWatts},
                      Field{"totalWattsConfidence", &Sample::totalWattsConfidence}};
  }
};

std::vector<TemperatureSensor> sensors(int count) {
  std::vector<TemperatureSensor> list;
  for (int index = 0; index < count; ++index) {
    list.push_back(
        {"Tp" + std::to_string(10 + index), "CPU core " + std::to_string(index), 41.0 + index * 0.37109375});
  }
  return list;
}

std::vector<ProProcessEnergy> processes(std::int32_t count) {
  std::vector<ProProcessEnergy> rows;
  for (std::int32_t index = 0; index < count; ++index) {
    rows.push_back({400 + index, "com.example.worker" + std::to_string(index), 120.25 / (index + 1),
                    31.7 / (index + 1), 88.125 + index, 4096.0 * index});
  }
  return rows;
}

HelperStatus helperStatus() {
  return {true,        true, true, 0, 20, "0.9.4", true, "/Library/PrivilegedHelperTools/QuellinHelper",
          std::nullopt};
}

std::vector<TemperatureSensor> temperatureList() { return sensors(40); }

ProTelemetrySnapshot telemetrySnapshot() {
  ProTelemetrySnapshot snapshot;
  snapshot.isAvailable = true;
  snapshot.source = "powermetrics";
  snapshot.sampledAt = instantAt(1741081260);
  snapshot.sampleIntervalMilliseconds = 1000;
  snapshot.processes = processes(12);
  snapshot.cpuPowerWatts = 4.372;
  snapshot.gpuPowerWatts = 0.118;
  snapshot.anePowerWatts = 0;
  snapshot.rawSampleSummary = "1 sample, 412 tasks";
  return snapshot;
}

Sample storedSample() {
  Sample sample;
  sample.sensors = sensors(55);
  sample.processes = processes(5);
  return sample;
}

template <auto make, KeyOrder order>
void encode(benchmark::State& state) {
  const auto value = make();
  std::string text;
  for (auto _ : state) {
    text.clear();
    if (!appendJSON(text, value, order)) throw std::runtime_error("the value could not be encoded");
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  state.counters["bytes"] = static_cast<double>(text.size());
}

template <auto make, KeyOrder order>
void decode(benchmark::State& state) {
  using Value = decltype(make());
  const std::string text = encodeJSON(make(), order).value();
  JSONDecoder decoder;
  for (auto _ : state) {
    auto value = decoder.decode<Value>(text);
    if (!value) throw std::runtime_error(value.error().debugDescription());
    benchmark::DoNotOptimize(value);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

std::string sampleText() { return encodeJSON(storedSample(), KeyOrder::sorted).value(); }

void copySample(benchmark::State& state) {
  const std::string text = sampleText();
  std::string copy(text.size(), ' ');
  for (auto _ : state) {
    std::memcpy(copy.data(), text.data(), text.size());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
}

void encodeSampleInstead(benchmark::State& state) {
  const auto value = nlohmann::json::parse(sampleText());
  for (auto _ : state) benchmark::DoNotOptimize(value.dump());
}

void parseSample(benchmark::State& state) {
  const simdjson::padded_string text = sampleText();
  simdjson::dom::parser parser;
  for (auto _ : state) benchmark::DoNotOptimize(parser.parse(text).error());
}

// Into a tree of values; ours ends with the typed record.
void decodeSampleInstead(benchmark::State& state) {
  const std::string text = sampleText();
  for (auto _ : state) benchmark::DoNotOptimize(nlohmann::json::parse(text));
}

BENCHMARK(copySample)->Name("JSON/encode/sample/floor");
BENCHMARK(encodeSampleInstead)->Name("JSON/encode/sample/instead");
BENCHMARK(parseSample)->Name("JSON/decode/sample/floor");
BENCHMARK(decodeSampleInstead)->Name("JSON/decode/sample/instead");
BENCHMARK(encode<helperStatus, KeyOrder::declaration>)->Name("JSON/encode/helperStatus");
BENCHMARK(encode<temperatureList, KeyOrder::declaration>)->Name("JSON/encode/temperatures");
BENCHMARK(encode<telemetrySnapshot, KeyOrder::declaration>)->Name("JSON/encode/proTelemetry");
BENCHMARK(encode<storedSample, KeyOrder::sorted>)->Name("JSON/encode/sample");
BENCHMARK(decode<helperStatus, KeyOrder::declaration>)->Name("JSON/decode/helperStatus");
BENCHMARK(decode<temperatureList, KeyOrder::declaration>)->Name("JSON/decode/temperatures");
BENCHMARK(decode<telemetrySnapshot, KeyOrder::declaration>)->Name("JSON/decode/proTelemetry");
BENCHMARK(decode<storedSample, KeyOrder::sorted>)->Name("JSON/decode/sample");

}  // namespace
}  // namespace quellin
