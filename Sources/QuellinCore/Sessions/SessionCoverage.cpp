#include "QuellinCore/Sessions/SessionCoverage.h"

#include <algorithm>
#include <limits>

#include "QuellinCore/Sessions/WattStatistics.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {

std::optional<double> SessionCoverage::coveredPercent() const {
  if (!(durationSeconds > 0)) return std::nullopt;
  return 100 * coveredSeconds / durationSeconds;
}

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

std::optional<ReadingGap> CoverageBuilder::gapBefore(Instant instant) const {
  if (!(elapsedSeconds(coveredTo_, instant) > longestCoveredSeconds_)) return std::nullopt;
  return ReadingGap{.startSeconds = elapsedSeconds(startedAt_, coveredTo_),
                    .endSeconds = elapsedSeconds(startedAt_, instant)};
}

std::optional<ReadingGap> CoverageBuilder::advance(Instant instant) {
  const double seconds = elapsedSeconds(coveredTo_, instant);
  const std::optional<ReadingGap> gap = gapBefore(instant);
  if (gap) {
    coverage_.gapCount = checkedAdd(coverage_.gapCount, 1);
    coverage_.longestGapSeconds = std::max(coverage_.longestGapSeconds.value_or(0), seconds);
  } else {
    coverage_.coveredSeconds += seconds;
  }
  // Time that passes again after the clock was set back is covered already.
  if (instant > coveredTo_) coveredTo_ = instant;
  return gap;
}

std::optional<ReadingGap> CoverageBuilder::ingestReading(Instant timestamp) {
  hasReadings_ = true;
  return advance(timestamp);
}

std::optional<ReadingGap> CoverageBuilder::lastGap(Instant endedAt) const {
  if (hasReadings_) return gapBefore(endedAt);
  const double seconds = elapsedSeconds(startedAt_, endedAt);
  return seconds > 0 ? std::optional(ReadingGap{.startSeconds = 0, .endSeconds = seconds}) : std::nullopt;
}

SessionCoverage CoverageBuilder::materialize(Instant endedAt) const {
  CoverageBuilder whole = *this;
  whole.advance(endedAt);
  SessionCoverage result = whole.coverage_;
  result.durationSeconds = elapsedSeconds(startedAt_, endedAt);
  if (hasReadings_) return result;
  const auto gap = lastGap(endedAt);
  result.coveredSeconds = 0;
  result.gapCount = gap ? 1 : 0;
  if (gap) result.longestGapSeconds = result.durationSeconds;
  return result;
}

}  // namespace quellin
