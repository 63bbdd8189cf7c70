#include "QuellinCore/Sessions/Analysis/EnergyOverRuns.h"

#include <algorithm>

#include "QuellinCore/Sessions/Analysis/Mean.h"

namespace quellin {
namespace {

std::vector<double> joulesOf(const std::string& sourceKind, std::span<const std::vector<SourceEnergy>> runs) {
  std::vector<double> joules;
  for (const std::vector<SourceEnergy>& run : runs) {
    const auto found = std::ranges::find(run, sourceKind, &SourceEnergy::sourceKind);
    if (found != run.end() && found->joules) joules.push_back(*found->joules);
  }
  return joules;
}

}  // namespace

std::optional<ValueSpread> spreadOf(std::span<const double> values) {
  if (values.empty()) return std::nullopt;
  const auto [lowest, highest] = std::ranges::minmax(values);
  return ValueSpread{.count = static_cast<std::int64_t>(values.size()),
                     .mean = meanOf(values),
                     .lowest = lowest,
                     .highest = highest};
}

std::vector<EnergyOverRuns> energyOverRuns(std::span<const std::vector<SourceEnergy>> runs) {
  std::vector<EnergyOverRuns> result;
  for (const std::vector<SourceEnergy>& run : runs) {
    for (const SourceEnergy& source : run) {
      const bool isKnown =
          std::ranges::find(result, source.sourceKind, &EnergyOverRuns::sourceKind) != result.end();
      if (isKnown) continue;
      if (const auto joules = spreadOf(joulesOf(source.sourceKind, runs)))
        result.push_back({source.sourceKind, source.sourceLabel, source.confidence, *joules});
    }
  }
  return result;
}

}  // namespace quellin
