#include "QuellinCore/Sessions/SampleFacts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>

#include "QuellinCore/Sessions/PowerSource.h"
#include "QuellinCore/Sessions/Storage/ByteStream.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

// A source's number is its place here: entries are only ever added.
std::array<PowerSource, 6> numberedSources() {
  using enum PowerReadingKind;
  return {powerSource(batteryDischarge, false),  powerSource(batteryChargeInput, false),
          powerSource(batterySupplement, false), powerSource(ioReportSiliconPower, false),
          powerSource(std::nullopt, true),       powerSource(std::nullopt, false)};
}

// Dates outside these years are written but not all are read back.
bool isReadBack(Instant instant) { return instant >= instantAt(0) && instant < instantAt(253402300800.0); }

void addContribution(std::vector<Contribution>& list, std::string_view name, bool isMeasured, double score) {
  if (score > 0) list.push_back({repairedUTF8(name), isMeasured, score});
}

void appendDouble(std::string& bytes, double value) {
  const std::size_t place = bytes.size();
  bytes.resize(place + sizeof value);
  std::memcpy(bytes.data() + place, &value, sizeof value);
}

std::optional<double> readDouble(ByteReader& reader) {
  const auto bytes = reader.bytes(sizeof(double));
  if (!bytes) return std::nullopt;
  double value = 0;
  std::memcpy(&value, bytes->data(), sizeof value);
  return value;
}

std::string packed(const SampleFacts& facts) {
  std::string bytes;
  if (facts.contributions.empty() && !facts.telemetrySampledAt) return bytes;
  bytes.push_back(facts.telemetrySampledAt ? '\1' : '\0');
  if (facts.telemetrySampledAt) appendDouble(bytes, facts.telemetrySampledAt->time_since_epoch().count());
  for (const auto& [name, isMeasured, score] : facts.contributions) {
    appendVarint(bytes, name.size() * 2 + (isMeasured ? 1 : 0));
    bytes.append(name);
    appendDouble(bytes, score);
  }
  return bytes;
}

// Fills in what `packed` made; false when the bytes make no sense.
bool unpack(std::string_view bytes, SampleFacts& facts) {
  if (bytes.empty()) return true;
  ByteReader reader(bytes.substr(1));
  if (bytes.front() == '\1') {
    const auto seconds = readDouble(reader);
    if (!seconds) return false;
    facts.telemetrySampledAt = instantAt(*seconds);
  } else if (bytes.front() != '\0') {
    return false;
  }
  while (!reader.rest().empty()) {
    const auto head = reader.varint();
    const auto name = head ? reader.bytes(*head / 2) : std::nullopt;
    const auto score = readDouble(reader);
    if (!name || !score) return false;
    facts.contributions.push_back({std::string(*name), *head % 2 != 0, *score});
  }
  return true;
}

}  // namespace

std::vector<Contribution> contributions(const ProTelemetrySnapshot& telemetry) {
  std::vector<Contribution> list;
  for (const ProProcessEnergy& row : telemetry.processes) {
    const double fallback = row.cpuTimePercent.value_or(row.wakeupsPerSecond.value_or(0));
    addContribution(list, row.name, true, row.energyImpact.value_or(fallback));
  }
  return list;
}

std::vector<Contribution> contributions(std::span<const ProcessActivityDTO> activities) {
  std::vector<Contribution> list;
  for (const ProcessActivityDTO& row : activities) addContribution(list, row.name, false, row.impactScore);
  return list;
}

std::optional<SampleFacts> sampleFacts(const SystemPowerStateDTO& snapshot,
                                       std::span<const ProcessActivityDTO> activities,
                                       const ProTelemetrySnapshot* telemetry) {
  if (!isReadBack(snapshot.timestamp) || (telemetry != nullptr && !isReadBack(telemetry->sampledAt)))
    return std::nullopt;
  const PowerSource inferred = powerSource(snapshot.battery, snapshot.power.has_value());
  SampleFacts facts;
  facts.powerSourceKind = snapshot.powerSourceKind.value_or(std::string(inferred.kind));
  facts.powerSourceLabel = snapshot.powerSourceLabel.value_or(std::string(inferred.label));
  if (telemetry != nullptr) {
    facts.contributions = contributions(*telemetry);
    if (telemetry->isAvailable)
      facts.telemetrySampledAt = std::chrono::floor<std::chrono::seconds>(telemetry->sampledAt);
  }
  std::ranges::move(contributions(activities), std::back_inserter(facts.contributions));
  return facts;
}

StoredFacts storedFacts(const SampleFacts& facts) {
  const auto sources = numberedSources();
  const auto* const found =
      std::ranges::find(sources, PowerSource{facts.powerSourceKind, facts.powerSourceLabel});
  if (found == sources.end()) return {};
  return {found - sources.begin(), packed(facts)};
}

std::optional<SampleFacts> factsFrom(std::optional<std::int64_t> powerSource,
                                     std::optional<std::string_view> contributions) {
  const auto sources = numberedSources();
  if (!powerSource || !contributions || *powerSource < 0) return std::nullopt;
  const auto number = static_cast<std::size_t>(*powerSource);
  if (number >= sources.size()) return std::nullopt;
  SampleFacts facts;
  facts.powerSourceKind = sources[number].kind;
  facts.powerSourceLabel = sources[number].label;
  if (!unpack(*contributions, facts)) return std::nullopt;
  return facts;
}

}  // namespace quellin
