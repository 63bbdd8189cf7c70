#include "QuellinCore/Sessions/WattStatistics.h"

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
double elapsedSeconds(Instant start, Instant end) {
  const double seconds = (end - start).count();
  return seconds > 0 ? seconds : 0;
}

double trapezoidWattHours(const WattSample& earlier, const WattSample& later) {
  return (earlier.watts + later.watts) * 0.5 * elapsedSeconds(earlier.timestamp, later.timestamp) /
         joulesPerWattHour;
}

void WattStatistics::ingest(const WattSample& sample) {
  wattSampleCount = checkedAdd(wattSampleCount, 1);
  wattSum += sample.watts;
  if (!minWatts || sample.watts < *minWatts) minWatts = sample.watts;
  if (!maxWatts || sample.watts >= *maxWatts) maxWatts = sample.watts;
  if (lastWattSample) totalWattHours += trapezoidWattHours(*lastWattSample, sample);
  lastWattSample = sample;
}

std::optional<double> WattStatistics::energy() const {
  return wattSampleCount >= 2 ? std::optional(totalWattHours) : std::nullopt;
}

std::optional<double> WattStatistics::averageWatts(double durationSeconds) const {
  if (wattSampleCount == 0) return std::nullopt;
  if (wattSampleCount == 1) return wattSum;
  if (durationSeconds > 0) return totalWattHours * joulesPerWattHour / durationSeconds;
  return wattSum / static_cast<double>(wattSampleCount);
}

}  // namespace quellin
