#include "QuellinCore/Platform/Recorded/TraceCoding.h"

#include <optional>
#include <utility>

#include "QuellinCore/Platform/Recorded/TraceLimits.h"
#include "QuellinCore/Platform/Recorded/TraceTick.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

constexpr std::string_view tickKind = "tick";

// How every tick line of our own begins; it spares reading the line twice.
constexpr std::string_view tickStart = R"({"kind":"tick",)";

struct LineKind {
  std::string kind;

  static constexpr auto fields() { return std::tuple{Field{"kind", &LineKind::kind}}; }
};

// The fields that every version has.
struct Identity {
  std::string kind;
  std::string format;
  std::int64_t majorVersion = 0;
  std::int64_t minorVersion = 0;

  static constexpr auto fields() {
    return std::tuple{Field{"kind", &Identity::kind}, Field{"format", &Identity::format},
                      Field{"majorVersion", &Identity::majorVersion},
                      Field{"minorVersion", &Identity::minorVersion}};
  }
};

std::string reasonOf(const DecodingError& error) {
  const std::string place = error.path().empty() ? "" : "\"" + error.path() + "\": ";
  return place + error.debugDescription();
}

std::vector<TraceSMCKey> spelled(const std::vector<SMCAnswer>& answers) {
  std::vector<TraceSMCKey> keys;
  keys.reserve(answers.size());
  for (const SMCAnswer& answer : answers) {
    keys.push_back({.key = codeText(answer.key),
                    .type = codeText(answer.value.dataType),
                    .bytes = hexText(answer.value.bytes)});
  }
  return keys;
}

std::vector<TraceHIDService> spelled(const std::vector<HIDTemperatureService>& answers) {
  std::vector<TraceHIDService> services;
  services.reserve(answers.size());
  for (const HIDTemperatureService& answer : answers) {
    TraceHIDService service{.product = answer.product, .temperature = answer.temperature, .nonFinite = {}};
    if (answer.temperature) service.nonFinite = nonFiniteKind(*answer.temperature);
    if (service.nonFinite) service.temperature.reset();
    services.push_back(std::move(service));
  }
  return services;
}

std::optional<std::vector<TraceProperty>> spelled(const std::optional<PropertyTable>& table,
                                                  SerialNumbers serialNumbers) {
  if (!table) return std::nullopt;
  return traceProperties(*table, serialNumbers);
}

TraceTick spelled(const HostAnswers& answers, SerialNumbers serialNumbers) {
  TraceTick tick;
  tick.wall = answers.wall.time_since_epoch().count();
  tick.monotonic = answers.monotonic.count();
  if (answers.smc) tick.smc = spelled(*answers.smc);
  if (!answers.hid.empty()) tick.hid = spelled(answers.hid);
  if (answers.battery != BatteryTables{}) {
    tick.battery = TraceBattery{.registry = spelled(answers.battery.registry, serialNumbers),
                                .powerSource = spelled(answers.battery.powerSource, serialNumbers)};
  }
  if (answers.energy) {
    tick.energy =
        TraceEnergy{.seconds = answers.energy->interval.count(), .channels = answers.energy->channels};
  }
  if (answers.thermal != ThermalSignals{}) tick.thermal = answers.thermal;
  if (answers.processes) tick.processes = traceProcesses(*answers.processes);
  return tick;
}

using Fault = std::optional<std::string>;

Fault readSMC(const std::vector<TraceSMCKey>& keys, std::vector<SMCAnswer>& answers) {
  answers.reserve(keys.size());
  for (const TraceSMCKey& key : keys) {
    const auto code = codeOfText(key.key);
    const auto type = codeOfText(key.type);
    auto bytes = bytesOfHexText(key.bytes);
    if (!code || !type) return "the key \"" + key.key + "\" or its type is no code of four characters";
    if (!bytes) return "the bytes of the key \"" + key.key + "\" are not hexadecimal";
    answers.push_back({.key = *code, .value = {.dataType = *type, .bytes = *std::move(bytes)}});
  }
  return std::nullopt;
}

Fault readHID(std::vector<TraceHIDService> services, std::vector<HIDTemperatureService>& answers) {
  answers.reserve(services.size());
  for (TraceHIDService& service : services) {
    if (service.nonFinite && service.temperature) return "a temperature service has two temperatures";
    if (service.nonFinite) service.temperature = nonFiniteValue(*service.nonFinite);
    answers.push_back({.product = std::move(service.product), .temperature = service.temperature});
  }
  return std::nullopt;
}

Fault readTable(const std::optional<std::vector<TraceProperty>>& properties,
                std::optional<PropertyTable>& table) {
  if (!properties) return std::nullopt;
  auto result = propertyTable(*properties);
  if (!result) return std::move(result.error());
  table = *std::move(result);
  return std::nullopt;
}

Fault readBattery(const TraceBattery& battery, BatteryTables& tables) {
  if (auto fault = readTable(battery.registry, tables.registry)) return fault;
  return readTable(battery.powerSource, tables.powerSource);
}

Fault readProcesses(TraceProcesses processes, std::shared_ptr<const ProcessAnswers>& answers) {
  auto result = processAnswers(std::move(processes));
  if (!result) return std::move(result.error());
  answers = std::make_shared<const ProcessAnswers>(*std::move(result));
  return std::nullopt;
}

Fault readTick(TraceTick tick, HostAnswers& answers) {
  answers.wall = instantAt(tick.wall);
  answers.monotonic = Seconds{tick.monotonic};
  if (tick.energy) {
    answers.energy =
        EnergyAnswer{.interval = Seconds{tick.energy->seconds}, .channels = std::move(tick.energy->channels)};
  }
  answers.thermal = tick.thermal.value_or(ThermalSignals{});
  if (tick.smc) {
    if (auto fault = readSMC(*tick.smc, answers.smc.emplace())) return fault;
  }
  if (tick.hid) {
    if (auto fault = readHID(*std::move(tick.hid), answers.hid)) return fault;
  }
  if (tick.battery) {
    if (auto fault = readBattery(*tick.battery, answers.battery)) return fault;
  }
  return tick.processes ? readProcesses(*std::move(tick.processes), answers.processes) : std::nullopt;
}

}  // namespace

std::expected<std::string, std::string> tickLine(const HostAnswers& answers, SerialNumbers serialNumbers) {
  if (auto fault = numberFault(answers)) return std::unexpected(*std::move(fault));
  auto line = encodeJSON(spelled(answers, serialNumbers));
  if (!line) return std::unexpected(line.error().message());
  return *std::move(line);
}

std::expected<TraceLineKind, std::string> traceLineKind(JSONDecoder& decoder, std::string_view line) {
  if (line.starts_with(tickStart)) return TraceLineKind::tick;
  const auto kind = decoder.decode<LineKind>(line);
  if (!kind) return std::unexpected(reasonOf(kind.error()));
  return kind->kind == tickKind ? TraceLineKind::tick : TraceLineKind::unknown;
}

std::expected<HostAnswers, std::string> answersOfTickLine(JSONDecoder& decoder, std::string_view line) {
  auto tick = decoder.decode<TraceTick>(line);
  if (!tick) return std::unexpected(reasonOf(tick.error()));
  HostAnswers answers;
  auto fault = readTick(*std::move(tick), answers);
  if (!fault) fault = numberFault(answers);
  if (fault) return std::unexpected(*std::move(fault));
  return answers;
}

std::expected<TraceHeader, HeaderFault> headerOfLine(JSONDecoder& decoder, std::string_view line) {
  const auto identity = decoder.decode<Identity>(line);
  if (!identity || identity->kind != TraceHeader{}.kind || identity->format != traceFormat) {
    return std::unexpected(HeaderFault{.reason = "this is not the first line of a trace", .isNewer = false});
  }
  if (identity->majorVersion != traceMajorVersion) {
    return std::unexpected(
        HeaderFault{.reason = "the trace is of version " + std::to_string(identity->majorVersion) + "." +
                              std::to_string(identity->minorVersion) + " of the format, and only version " +
                              std::to_string(traceMajorVersion) + " can be read",
                    .isNewer = identity->majorVersion > traceMajorVersion});
  }
  auto header = decoder.decode<TraceHeader>(line);
  if (!header) return std::unexpected(HeaderFault{.reason = reasonOf(header.error()), .isNewer = false});
  if (auto fault = numberFault(*header)) {
    return std::unexpected(HeaderFault{.reason = *std::move(fault), .isNewer = false});
  }
  return *std::move(header);
}

}  // namespace quellin
