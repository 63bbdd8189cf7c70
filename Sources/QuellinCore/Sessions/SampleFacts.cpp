#include "QuellinCore/Sessions/SampleFacts.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "QuellinCore/Sessions/PowerSource.h"
#include "QuellinCore/Support/ISO8601.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

// Dates outside these years are written but not all are read back.
bool isReadBack(Instant instant) { return instant >= instantAt(0) && instant < yearTenThousand; }

void addContribution(std::vector<Contribution>& list, std::string_view name, bool isMeasured, double score) {
  if (score > 0) list.push_back({repairedUTF8(name), isMeasured, score});
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
  const PowerSource source = storedPowerSource(snapshot);
  SampleFacts facts;
  facts.powerSourceKind = source.kind;
  facts.powerSourceLabel = source.label;
  if (telemetry != nullptr) {
    facts.contributions = contributions(*telemetry);
    if (telemetry->isAvailable)
      facts.telemetrySampledAt = std::chrono::floor<std::chrono::seconds>(telemetry->sampledAt);
  }
  std::ranges::move(contributions(activities), std::back_inserter(facts.contributions));
  return facts;
}

}  // namespace quellin
