#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"

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
