#include "QuellinCore/Sessions/Analysis/EnergyAboveIdle.h"

#include <algorithm>

namespace quellin {
namespace {

// What is left of an energy when an idle machine's energy over the same time is taken away.
double joulesAbove(double idleWatts, double joules, double seconds) { return joules - idleWatts * seconds; }

}  // namespace

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
    if (source.joules) above.joules = joulesAbove(above.idleWatts, *source.joules, source.seconds);
    result.push_back(above);
  }
  return result;
}

std::optional<double> countedJoulesAboveIdle(const CountedEnergy& energy, double seconds,
                                             const CountedEnergy& idle) {
  if (!idle.averageWatts) return std::nullopt;
  return joulesAbove(*idle.averageWatts, energy.joules, seconds);
}

}  // namespace quellin
