#include "QuellinCore/Sessions/SampleFacts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>

#include "QuellinCore/Sessions/ByteStream.h"
#include "QuellinCore/Sessions/PowerSource.h"
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

std::string packed(const std::vector<Contribution>& list) {
  std::string bytes;
  for (const auto& [name, isMeasured, score] : list) {
    appendVarint(bytes, name.size() * 2 + (isMeasured ? 1 : 0));
    bytes.append(name);
    const std::size_t place = bytes.size();
    bytes.resize(place + sizeof score);
    std::memcpy(bytes.data() + place, &score, sizeof score);
  }
  return bytes;
}

std::optional<std::vector<Contribution>> unpacked(std::string_view bytes) {
  std::vector<Contribution> list;
  ByteReader reader(bytes);
  while (!reader.rest().empty()) {
    const auto head = reader.varint();
    const auto name = head ? reader.bytes(*head / 2) : std::nullopt;
    const auto score = reader.bytes(sizeof(double));
    if (!name || !score) return std::nullopt;
    Contribution& entry = list.emplace_back(std::string(*name), *head % 2 != 0, 0.0);
    std::memcpy(&entry.score, score->data(), sizeof entry.score);
  }
  return list;
}

}  // namespace

std::vector<Contribution> contributions(const ProTelemetrySnapshot& telemetry) {
  std::vector<Contribution> list;
  for (const ProProcessEnergy& row : telemetry.processes) {
    const auto score = row.energyImpact     ? row.energyImpact
                       : row.cpuTimePercent ? row.cpuTimePercent
                                            : row.wakeupsPerSecond;
    addContribution(list, row.name, true, score.value_or(0));
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
  if (telemetry != nullptr) facts.contributions = contributions(*telemetry);
  std::ranges::move(contributions(activities), std::back_inserter(facts.contributions));
  return facts;
}

StoredFacts storedFacts(const SampleFacts& facts) {
  const auto sources = numberedSources();
  const auto found = std::ranges::find(sources, PowerSource{facts.powerSourceKind, facts.powerSourceLabel});
  if (found == sources.end()) return {};
  return {found - sources.begin(), packed(facts.contributions)};
}

std::optional<SampleFacts> factsFrom(std::optional<std::int64_t> powerSource,
                                     std::optional<std::string_view> contributions) {
  const auto sources = numberedSources();
  if (!powerSource || !contributions || *powerSource < 0) return std::nullopt;
  const auto number = static_cast<std::size_t>(*powerSource);
  auto list = unpacked(*contributions);
  if (!list || number >= sources.size()) return std::nullopt;
  return SampleFacts{std::string(sources[number].kind), std::string(sources[number].label), *std::move(list)};
}

}  // namespace quellin
