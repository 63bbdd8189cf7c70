#pragma once

#include <cstdint>
#include <optional>

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// The total watts of one moment.
struct WattSample {
  Instant timestamp;  ///< when it was read
  double watts = 0;   ///< total watts

  bool operator==(const WattSample&) const = default;
};

/// A watt-hour in joules, and an hour in seconds.
inline constexpr double joulesPerWattHour = 3600;

/// From `start` to `end` in seconds; 0 when the clock was set back in between.
[[nodiscard]] double elapsedSeconds(Instant start, Instant end);

/// Watt-hours between two moments by the trapezoid rule, however far they lie apart; 0 when time did not
/// pass.
[[nodiscard]] double trapezoidWattHours(const WattSample& earlier, const WattSample& later);

/// What a stream of watt readings comes to.
struct WattStatistics {
  std::int64_t wattSampleCount = 0;          ///< how many readings
  double wattSum = 0;                        ///< watts, of all readings
  std::optional<double> minWatts;            ///< absent without a reading
  std::optional<double> maxWatts;            ///< absent without a reading
  double totalWattHours = 0;                 ///< by the trapezoid rule; see `energy`
  std::optional<WattSample> lastWattSample;  ///< where the next trapezoid begins

  /// Adds a reading and the energy since the one before. Ends the process when the count overflows.
  void ingest(const WattSample& sample);

  /// The energy in watt-hours; absent with fewer than two readings.
  [[nodiscard]] std::optional<double> energy() const;

  /// The mean over `durationSeconds`, weighted by time where time has passed; absent without a reading.
  [[nodiscard]] std::optional<double> averageWatts(double durationSeconds) const;
};

}  // namespace quellin
