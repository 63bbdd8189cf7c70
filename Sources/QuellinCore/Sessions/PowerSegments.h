#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Sessions/BatterySpan.h"
#include "QuellinCore/Sessions/PowerSamplePoint.h"
#include "QuellinCore/Sessions/PowerSessionPowerSegment.h"
#include "QuellinCore/Sessions/WattStatistics.h"

namespace quellin {

/// The segment that is still open. A plain value: several threads may read one, as long as none changes it.
class PowerSegmentBuilder {
 public:
  /// An empty segment for `first` and what follows it; `first` itself is not in it yet.
  PowerSegmentBuilder(std::int64_t index, const PowerSamplePoint& first);

  /// Whether a point belongs to this segment: same source kind, same state of external power.
  [[nodiscard]] bool continues(const PowerSamplePoint& point) const;

  /// Adds a point. Ends the process when a count overflows.
  void ingest(const PowerSamplePoint& point);

  /// The segment as it stands.
  [[nodiscard]] PowerSessionPowerSegment materialize() const;

 private:
  std::int64_t index_;
  std::string sourceKind_;
  std::string sourceLabel_;
  std::optional<bool> acConnected_;
  Instant startedAt_;
  Instant endedAt_;
  std::int64_t sampleCount_ = 0;
  WattStatistics watts_;
  BatterySpan battery_;
};

/// Cuts a stream of points into segments. A value: work on a copy leaves the original open. Several threads
/// may read one, as long as none changes it.
class PowerSegmentAccumulator {
 public:
  /// Adds a point to the open segment, or opens another one with it.
  void ingest(const PowerSamplePoint& point);

  /// Finishes the open segment and returns all segments in order.
  const std::vector<PowerSessionPowerSegment>& materialize();

  /// The segment under way.
  [[nodiscard]] const std::optional<PowerSegmentBuilder>& current() const { return current_; }
  /// The finished segments.
  [[nodiscard]] const std::vector<PowerSessionPowerSegment>& segments() const { return segments_; }

 private:
  std::optional<PowerSegmentBuilder> current_;
  std::vector<PowerSessionPowerSegment> segments_;
};

/// Whether the segments are of two or more kinds of source.
[[nodiscard]] bool hasMixedSources(const std::vector<PowerSessionPowerSegment>& segments);

namespace PowerSessionMetrics {

/// The segments of a list of points.
[[nodiscard]] std::vector<PowerSessionPowerSegment> powerSegments(
    const std::vector<PowerSamplePoint>& points);

/// Watt-hours over readings in any order; absent with fewer than two.
[[nodiscard]] std::optional<double> wattHours(std::vector<WattSample> samples);

}  // namespace PowerSessionMetrics

}  // namespace quellin
