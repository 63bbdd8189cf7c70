#include "QuellinCore/Sessions/StoredSummary.h"

#include <algorithm>

namespace quellin {

void StoredSummary::ingest(const StoredSample& sample, JSONDecoder& decoder) {
  const PowerSamplePoint point = powerPoint(sample, decoder);
  figures_.ingest(point);
  figures_.battery.ingest(point.batteryPercent);
  figures_.ingest(maxima(sample.columns));
  figures_.contributors.add(processData(sample, decoder).contributions);
  lastTimestamp_ = point.timestamp;
}

PowerSessionSummary StoredSummary::materialize(const PowerSession& session) const {
  PowerSessionSummary summary;
  if (!lastTimestamp_) return summary;
  const Instant end = std::max(session.endedAt().value_or(*lastTimestamp_), *lastTimestamp_);
  figures_.update(summary, elapsedSeconds(session.startedAt(), end));
  return summary;
}

}  // namespace quellin
