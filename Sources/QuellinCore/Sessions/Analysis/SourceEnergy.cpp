#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"

#include <algorithm>
#include <map>

#include "QuellinCore/Models/PowerReadingRules.h"
#include "QuellinCore/Sessions/Analysis/SourceTotals.h"

namespace quellin {
namespace {

constexpr double joulesPerWattHour = 3600;

SourceEnergy energyOf(const SourceTotals& totals, PowerReadingKind kind,
                      const std::vector<PowerSessionPowerSegment>& segments) {
  SourceEnergy result{.sourceKind = totals.sourceKind,
                      .sourceLabel = std::string(powerReadingTexts(kind).label),
                      .confidence = std::string(rawValue(powerReadingConfidence(kind))),
                      .joules = std::nullopt,
                      .wattHours = totals.totalWattHours,
                      .averageWatts = totals.averageWatts,
                      .maxWatts = totals.maxWatts};
  double wattSum = 0;
  for (const PowerSessionPowerSegment& segment : segments) {
    if (segment.sourceKind != totals.sourceKind) continue;
    result.readings += segment.wattSampleCount;
    wattSum += segment.averageWatts.value_or(0) * static_cast<double>(segment.wattSampleCount);
    if (segment.totalWattHours) result.seconds += segment.durationSeconds;
  }
  if (result.wattHours) result.joules = *result.wattHours * joulesPerWattHour;
  if (!result.averageWatts) result.averageWatts = wattSum / static_cast<double>(result.readings);
  return result;
}

}  // namespace

std::vector<SourceEnergy> energyBySource(const std::vector<PowerSessionPowerSegment>& segments) {
  const std::vector<SourceTotals> totals = totalsBySource(segments);
  std::vector<SourceEnergy> sources;
  sources.reserve(totals.size());
  for (const SourceTotals& total : totals) {
    if (const auto kind = fromRawValue<PowerReadingKind>(total.sourceKind))
      sources.push_back(energyOf(total, *kind, segments));
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
