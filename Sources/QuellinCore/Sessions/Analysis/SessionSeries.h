#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/Analysis/SeriesColumn.h"
#include "QuellinCore/Sessions/PowerSamplePoint.h"
#include "QuellinCore/Sessions/SampleColumns.h"

namespace quellin {

/// A power source that samples of a session name.
struct SeriesSource {
  std::string kind;                       ///< raw value of a `PowerReadingKind`, or "unavailable"
  std::string label;                      ///< what people are told
  std::optional<std::string> summary;     ///< what the figure does and does not include
  std::optional<std::string> confidence;  ///< raw value of a `PowerReadingConfidence`

  static constexpr auto fields() {
    return std::tuple{Field{"kind", &SeriesSource::kind}, Field{"label", &SeriesSource::label},
                      Field{"summary", &SeriesSource::summary},
                      Field{"confidence", &SeriesSource::confidence}};
  }

  bool operator==(const SeriesSource&) const = default;
};

/// The figures of a session's samples, column by column, as they were recorded.
struct SessionSeries {
  double startedAt = 0;               ///< start of the session in seconds since 1970, with their fraction
  std::vector<SeriesSource> sources;  ///< in the order in which they were first seen
  std::vector<double> seconds;        ///< since the start of the session; never falling
  std::vector<std::int64_t> source;   ///< index into `sources`
  SeriesColumn<double> watts;         ///< of the source
  SeriesColumn<std::int64_t> batteryPercent;  ///< charge
  SeriesColumn<double> maxTemperature;        ///< degrees Celsius, of the hottest sensor
  SeriesColumn<std::int64_t> maxFanRPM;       ///< of the fastest fan
  std::vector<std::int64_t> thermalPressure;  ///< 0 (none, or not told) to 4

  static constexpr auto fields() {
    using Series = SessionSeries;
    return std::tuple{Field{"startedAt", &Series::startedAt},
                      Field{"sources", &Series::sources},
                      Field{"seconds", &Series::seconds},
                      Field{"source", &Series::source},
                      Field{"watts", &Series::watts},
                      Field{"batteryPercent", &Series::batteryPercent},
                      Field{"maxTemperature", &Series::maxTemperature},
                      Field{"maxFanRPM", &Series::maxFanRPM},
                      Field{"thermalPressure", &Series::thermalPressure}};
  }

  bool operator==(const SessionSeries&) const = default;
};

/// Gathers the series of a session from its samples, one after the other. Memory grows with them, by some
/// fifty bytes each. One thread at a time.
class SeriesBuilder {
 public:
  explicit SeriesBuilder(Instant startedAt);  ///< for a session from `startedAt`

  /// Takes the next sample with its power point; they come by timestamp.
  void ingest(const PowerSamplePoint& point, const SampleColumns& columns);

  /// The series so far.
  [[nodiscard]] const SessionSeries& series() const { return series_; }

 private:
  [[nodiscard]] std::int64_t sourceIndex(const PowerSamplePoint& point);

  Instant startedAt_;
  SessionSeries series_;
};

}  // namespace quellin
