#pragma once

#include <cstdint>
#include <optional>

#include "QuellinCore/Sessions/BatterySpan.h"
#include "QuellinCore/Sessions/ContributorScores.h"
#include "QuellinCore/Sessions/PowerSegments.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Sessions/SampleMaxima.h"
#include "QuellinCore/Sessions/WattStatistics.h"

namespace quellin {

/// What the live and the stored summary of a session gather alike. Counts end the process when they
/// overflow.
struct SessionFigures {
  std::int64_t sampleCount = 0;                    ///< with or without watts
  WattStatistics watts;                            ///< of the samples that have a reading
  BatterySpan battery;                             ///< first and last known charge
  std::optional<std::int64_t> maxThermalPressure;  ///< 0 to 4; absent without samples
  std::optional<double> maxTemperature;            ///< degrees Celsius; absent without sensors
  std::optional<std::int64_t> maxFanRPM;           ///< revolutions per minute; absent without fans
  ContributorScores contributors;                  ///< of all samples
  PowerSegmentAccumulator segmentAccumulator;      ///< stretches of one power source

  /// Counts a sample with its power point.
  void ingest(const PowerSamplePoint& point);

  /// Raises the maxima to those of a sample.
  void ingest(const SampleMaxima& maxima);

  /// Brings `summary`, empty or brought up to date by these same figures before, up to date for a session of
  /// `durationSeconds`. Finished segments are not written again.
  void update(PowerSessionSummary& summary, double durationSeconds) const;
};

}  // namespace quellin
