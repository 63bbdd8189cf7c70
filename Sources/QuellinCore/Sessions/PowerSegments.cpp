#include "QuellinCore/Sessions/PowerSegments.h"

#include <algorithm>
#include <utility>

#include "QuellinCore/Sessions/TimeOrder.h"
#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {

PowerSegmentBuilder::PowerSegmentBuilder(std::int64_t index, const PowerSamplePoint& first)
    : index_(index),
      sourceKind_(first.sourceKind),
      sourceLabel_(first.sourceLabel),
      acConnected_(first.acConnected),
      startedAt_(first.timestamp),
      endedAt_(first.timestamp) {}

bool PowerSegmentBuilder::continues(const PowerSamplePoint& point) const {
  return point.sourceKind == sourceKind_ && point.acConnected == acConnected_;
}

void PowerSegmentBuilder::ingest(const PowerSamplePoint& point) {
  sampleCount_ = checkedAdd(sampleCount_, 1);
  endedAt_ = point.timestamp;
  if (point.watts) {
    // Unlike that of a whole session, a segment's maximum takes up a reading that is not a number, and gives
    // it up for the next.
    const bool isLargest = !watts_.maxWatts || !(*watts_.maxWatts > *point.watts);
    watts_.ingest({point.timestamp, *point.watts});
    if (isLargest) watts_.maxWatts = point.watts;
  }
  battery_.ingest(point.batteryPercent);
}

PowerSessionPowerSegment PowerSegmentBuilder::materialize() const {
  const double duration = elapsedSeconds(startedAt_, endedAt_);
  return {.index = index_,
          .sourceKind = sourceKind_,
          .sourceLabel = sourceLabel_,
          .acConnected = acConnected_,
          .startedAt = startedAt_,
          .endedAt = endedAt_,
          .durationSeconds = duration,
          .sampleCount = sampleCount_,
          .wattSampleCount = watts_.wattSampleCount,
          .averageWatts = watts_.averageWatts(duration),
          .minWatts = watts_.minWatts,
          .maxWatts = watts_.maxWatts,
          .totalWattHours = watts_.energy(),
          .batteryPercentStart = battery_.batteryPercentStart,
          .batteryPercentEnd = battery_.batteryPercentEnd,
          .batteryPercentDelta = battery_.delta()};
}

void PowerSegmentAccumulator::ingest(const PowerSamplePoint& point) {
  if (!current_ || !current_->continues(point)) {
    materialize();
    current_.emplace(checkedCast<std::int64_t>(segments_.size()), point);
  }
  current_->ingest(point);
}

const std::vector<PowerSessionPowerSegment>& PowerSegmentAccumulator::materialize() {
  if (current_) segments_.push_back(current_->materialize());
  current_.reset();
  return segments_;
}

bool hasMixedSources(const std::vector<PowerSessionPowerSegment>& segments) {
  return std::ranges::any_of(
      segments, [&](const auto& segment) { return segment.sourceKind != segments.front().sourceKind; });
}

namespace PowerSessionMetrics {

std::vector<PowerSessionPowerSegment> powerSegments(const std::vector<PowerSamplePoint>& points) {
  PowerSegmentAccumulator accumulator;
  for (const PowerSamplePoint& point : points) accumulator.ingest(point);
  return accumulator.materialize();
}

std::optional<double> wattHours(std::vector<WattSample> samples) {
  std::ranges::stable_sort(samples, IsEarlier{}, &WattSample::timestamp);
  WattStatistics statistics;
  for (const WattSample& sample : samples) statistics.ingest(sample);
  return statistics.energy();
}

}  // namespace PowerSessionMetrics

}  // namespace quellin
