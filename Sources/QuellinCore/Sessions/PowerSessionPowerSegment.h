#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// A stretch of a session in which the power source stayed the same.
struct PowerSessionPowerSegment {
  std::int64_t index = 0;                           ///< place in the session, from 0
  std::string sourceKind;                           ///< raw value of a `PowerReadingKind`, or "unavailable"
  std::string sourceLabel;                          ///< that of the first point
  std::optional<bool> acConnected;                  ///< absent without battery information
  Instant startedAt;                                ///< timestamp of the first point
  Instant endedAt;                                  ///< timestamp of the last point
  double durationSeconds = 0;                       ///< never negative
  std::int64_t sampleCount = 0;                     ///< points, with or without watts
  std::int64_t wattSampleCount = 0;                 ///< points that carried watts
  std::optional<double> averageWatts;               ///< weighted by time where time has passed
  std::optional<double> minWatts;                   ///< absent without a reading
  std::optional<double> maxWatts;                   ///< absent without a reading
  std::optional<double> totalWattHours;             ///< absent with fewer than two readings
  std::optional<std::int64_t> batteryPercentStart;  ///< absent when never known
  std::optional<std::int64_t> batteryPercentEnd;    ///< absent when never known
  std::optional<std::int64_t> batteryPercentDelta;  ///< negative when the charge fell

  static constexpr auto fields() {
    using Segment = PowerSessionPowerSegment;
    return std::tuple{Field{"index", &Segment::index},
                      Field{"sourceKind", &Segment::sourceKind},
                      Field{"sourceLabel", &Segment::sourceLabel},
                      Field{"acConnected", &Segment::acConnected},
                      Field{"startedAt", &Segment::startedAt},
                      Field{"endedAt", &Segment::endedAt},
                      Field{"durationSeconds", &Segment::durationSeconds},
                      Field{"sampleCount", &Segment::sampleCount},
                      Field{"wattSampleCount", &Segment::wattSampleCount},
                      Field{"averageWatts", &Segment::averageWatts},
                      Field{"minWatts", &Segment::minWatts},
                      Field{"maxWatts", &Segment::maxWatts},
                      Field{"totalWattHours", &Segment::totalWattHours},
                      Field{"batteryPercentStart", &Segment::batteryPercentStart},
                      Field{"batteryPercentEnd", &Segment::batteryPercentEnd},
                      Field{"batteryPercentDelta", &Segment::batteryPercentDelta}};
  }

  bool operator==(const PowerSessionPowerSegment&) const = default;
};

}  // namespace quellin
