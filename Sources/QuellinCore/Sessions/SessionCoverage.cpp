#include "QuellinCore/Sessions/SessionCoverage.h"

#include <algorithm>
#include <limits>

#include "QuellinCore/Sessions/WattStatistics.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {

double longestCoveredSeconds(double sampleInterval) {
  constexpr double intervals = 3;
  constexpr double leastSeconds = 5;
  if (!(sampleInterval > 0)) return std::numeric_limits<double>::infinity();
  return std::max(intervals * sampleInterval, leastSeconds);
}

CoverageBuilder::CoverageBuilder(Instant startedAt, double sampleInterval)
    : startedAt_(startedAt),
      longestCoveredSeconds_(quellin::longestCoveredSeconds(sampleInterval)),
      coveredTo_(startedAt) {}

void CoverageBuilder::advance(Instant instant) {
  const double seconds = elapsedSeconds(coveredTo_, instant);
  if (seconds > longestCoveredSeconds_) {
    coverage_.gapCount = checkedAdd(coverage_.gapCount, 1);
    coverage_.longestGapSeconds = std::max(coverage_.longestGapSeconds.value_or(0), seconds);
  } else {
    coverage_.coveredSeconds += seconds;
  }
  // Time that passes again after the clock was set back is covered already.
  if (instant > coveredTo_) coveredTo_ = instant;
}

void CoverageBuilder::ingestReading(Instant timestamp) {
  hasReadings_ = true;
  advance(timestamp);
}

SessionCoverage CoverageBuilder::materialize(Instant endedAt) const {
  CoverageBuilder whole = *this;
  whole.advance(endedAt);
  SessionCoverage result = whole.coverage_;
  result.durationSeconds = elapsedSeconds(startedAt_, endedAt);
  if (hasReadings_) return result;
  result.coveredSeconds = 0;
  result.gapCount = result.durationSeconds > 0 ? 1 : 0;
  if (result.gapCount > 0) result.longestGapSeconds = result.durationSeconds;
  return result;
}

}  // namespace quellin
