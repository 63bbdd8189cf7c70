#include "QuellinCore/Sessions/StoredSummary.h"

#include <algorithm>

namespace quellin {

Instant sessionEnd(const PowerSession& session, Instant lastTimestamp) {
  return std::max(session.endedAt().value_or(lastTimestamp), lastTimestamp);
}

PowerSamplePoint StoredSummary::ingest(const StoredSample& sample, JSONDecoder& decoder) {
  PowerSamplePoint point = powerPoint(sample, decoder);
  figures_.ingest(point);
  figures_.battery.ingest(point.batteryPercent);
  figures_.ingest(maxima(sample.columns));
  figures_.contributors.add(processData(sample, decoder).contributions);
  lastTimestamp_ = point.timestamp;
  return point;
}

PowerSessionSummary StoredSummary::materialize(const PowerSession& session) const {
  PowerSessionSummary summary;
  if (!lastTimestamp_) return summary;
  figures_.update(summary, elapsedSeconds(session.startedAt(), sessionEnd(session, *lastTimestamp_)));
  return summary;
}

}  // namespace quellin
