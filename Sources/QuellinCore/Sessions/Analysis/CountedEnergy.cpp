#include "QuellinCore/Sessions/Analysis/CountedEnergy.h"

#include "QuellinCore/Models/PowerReadingRules.h"
#include "QuellinCore/Sessions/WattStatistics.h"

namespace quellin {

CountedEnergy countedEnergy(const SiliconEnergy& gained, double seconds) {
  return {.sourceKind = std::string(rawValue(countedReadingKind)),
          .confidence = std::string(rawValue(powerReadingConfidence(countedReadingKind))),
          .joules = gained.totalJoules,
          .wattHours = gained.totalJoules / joulesPerWattHour,
          .averageWatts = seconds > 0 ? std::optional(gained.totalJoules / seconds) : std::nullopt,
          .components = gained};
}

}  // namespace quellin
