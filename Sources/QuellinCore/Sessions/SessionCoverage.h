#pragma once

#include <cstdint>
#include <optional>
#include <tuple>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// How much of a session's time its power readings speak for. Energy is bridged over every pause; this tells
/// how much of it was measured. The default one is that of a session without samples.
struct SessionCoverage {
  double durationSeconds = 0;               ///< that of the session's summary
  double coveredSeconds = 0;                ///< the part of it outside the gaps
  std::int64_t gapCount = 0;                ///< stretches too long between one reading and the next
  std::optional<double> longestGapSeconds;  ///< absent without a gap

  /// The covered part of the duration in percent; absent for a session that has not lasted.
  [[nodiscard]] std::optional<double> coveredPercent() const;

  static constexpr auto fields() {
    return std::tuple{Field{"durationSeconds", &SessionCoverage::durationSeconds},
                      Field{"coveredSeconds", &SessionCoverage::coveredSeconds},
                      Field{"gapCount", &SessionCoverage::gapCount},
                      Field{"longestGapSeconds", &SessionCoverage::longestGapSeconds}};
  }

  bool operator==(const SessionCoverage&) const = default;
};

/// A stretch of a session that is too long to be spoken for by the readings at its ends.
struct ReadingGap {
  double startSeconds = 0;  ///< since the session started; the reading before, or that start
  double endSeconds = 0;    ///< since the session started; the reading after, or its end

  static constexpr auto fields() {
    return std::tuple{Field{"startSeconds", &ReadingGap::startSeconds},
                      Field{"endSeconds", &ReadingGap::endSeconds}};
  }

  bool operator==(const ReadingGap&) const = default;
};

/// The longest time between two readings in a row, in seconds, that is no gap in a session with this sample
/// interval: three intervals, and never less than five seconds, because reading every source takes time of
/// its own. Without a positive interval nothing is too long.
[[nodiscard]] double longestCoveredSeconds(double sampleInterval);

/// Works out the coverage of a session from its readings, one after the other. A sample without watts is no
/// reading: it neither covers time nor ends the time between its neighbours. A clock set back adds nothing. A
/// plain value: several threads may read one, as long as none changes it.
class CoverageBuilder {
 public:
  /// For a session from `startedAt` with a sample every `sampleInterval` seconds.
  CoverageBuilder(Instant startedAt, double sampleInterval);

  /// Takes the time of the next sample with watts; they come by time. Returns the gap that it ends.
  std::optional<ReadingGap> ingestReading(Instant timestamp);

  /// The gap between the last reading and `endedAt`; without a reading all of the session is one.
  [[nodiscard]] std::optional<ReadingGap> lastGap(Instant endedAt) const;

  /// The coverage of the session up to `endedAt`, which no reading is later than. The time before the first
  /// reading and after the last counts like that between two; without a reading all of it is one gap.
  [[nodiscard]] SessionCoverage materialize(Instant endedAt) const;

 private:
  [[nodiscard]] std::optional<ReadingGap> gapBefore(Instant instant) const;
  std::optional<ReadingGap> advance(Instant instant);

  Instant startedAt_;
  double longestCoveredSeconds_;
  Instant coveredTo_;
  bool hasReadings_ = false;
  SessionCoverage coverage_;
};

}  // namespace quellin
