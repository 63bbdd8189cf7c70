#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"

#include <algorithm>
#include <map>

#include "QuellinCore/Models/PowerReadingRules.h"
#include "QuellinCore/Sessions/Analysis/SourceTotals.h"
#include "QuellinCore/Sessions/WattStatistics.h"

namespace quellin {
namespace {

SourceEnergy energyOf(const SourceTotals& totals, PowerReadingKind kind) {
  SourceEnergy result{.sourceKind = totals.sourceKind,
                      .sourceLabel = std::string(powerReadingTexts(kind).label),
                      .confidence = std::string(rawValue(powerReadingConfidence(kind))),
                      .seconds = totals.measuredSeconds,
                      .readings = totals.readings,
                      .joules = std::nullopt,
                      .wattHours = totals.totalWattHours,
                      .averageWatts = totals.averageWatts,
                      .maxWatts = totals.maxWatts};
  if (result.wattHours) result.joules = *result.wattHours * joulesPerWattHour;
  return result;
}

}  // namespace

std::vector<SourceEnergy> energyBySource(const std::vector<PowerSessionPowerSegment>& segments) {
  const std::vector<SourceTotals> totals = totalsBySource(segments);
  std::vector<SourceEnergy> sources;
  sources.reserve(totals.size());
  for (const SourceTotals& total : totals) {
    if (const auto kind = fromRawValue<PowerReadingKind>(total.sourceKind))
      sources.push_back(energyOf(total, *kind));
  }
  return sources;
}

std::vector<EnergyAboveIdle> energyAboveIdle(const std::vector<SourceEnergy>& sources,
                                             const std::vector<SourceEnergy>& idle) {
  std::vector<EnergyAboveIdle> result;
  for (const SourceEnergy& source : sources) {
    const auto found = std::ranges::find(idle, source.sourceKind, &SourceEnergy::sourceKind);
    if (found == idle.end() || !source.averageWatts || !found->averageWatts) continue;
    EnergyAboveIdle above{.sourceKind = source.sourceKind,
                          .idleWatts = *found->averageWatts,
                          .watts = *source.averageWatts - *found->averageWatts,
                          .joules = std::nullopt};
    if (source.joules) above.joules = *source.joules - above.idleWatts * source.seconds;
    result.push_back(above);
  }
  return result;
}

std::vector<ContributorShare> contributorShares(const std::vector<PowerSessionContributor>& contributors) {
  std::map<std::string, double> sums;
  for (const auto& contributor : contributors) sums[contributor.source] += contributor.score;
  std::vector<ContributorShare> shares;
  shares.reserve(contributors.size());
  for (const auto& contributor : contributors) {
    shares.push_back({.name = contributor.name,
                      .source = contributor.source,
                      .score = contributor.score,
                      .percent = 100 * contributor.score / sums.at(contributor.source),
                      .confidence = contributor.confidence});
  }
  return shares;
}

}  // namespace quellin
