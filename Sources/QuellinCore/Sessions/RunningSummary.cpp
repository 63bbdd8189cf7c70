#include "QuellinCore/Sessions/RunningSummary.h"

#include <vector>

#include "QuellinCore/Sessions/PowerSessionMetrics.h"

namespace quellin {

// Unlike the maximum of a stored session this one begins with 0, and no sample takes it below that.
RunningSummary::RunningSummary() { figures_.maxThermalPressure = 0; }

void RunningSummary::ingest(const PowerSamplePoint& point, const std::optional<std::int64_t>& batteryPercent,
                            const SampleMaxima& maxima) {
  figures_.ingest(point);
  figures_.battery.ingest(batteryPercent);
  figures_.ingest(maxima);
  lastSampleTimestamp_ = point.timestamp;
}

void RunningSummary::ingest(const SystemPowerState& state,
                            std::span<const ProcessActivityInfo> processActivities,
                            const std::optional<ProTelemetrySnapshot>& proTelemetry) {
  const PowerSamplePoint point = PowerSessionMetrics::livePowerPoint(state);
  ingest(point, point.batteryPercent, maxima(state));
  if (proTelemetry && proTelemetry->isAvailable) {
    figures_.contributors.add(contributions(*proTelemetry));
    lastProTelemetrySampledAt_ = proTelemetry->sampledAt;
    return;
  }
  const std::vector<ProcessActivityDTO> activities(processActivities.begin(), processActivities.end());
  figures_.contributors.add(contributions(activities));
}

void RunningSummary::ingestStored(const StoredSample& sample, JSONDecoder& decoder) {
  ingest(powerPoint(sample, decoder), sample.columns.batteryPercent, maxima(sample.columns));
  const ProcessData data = processData(sample, decoder);
  if (data.telemetrySampledAt) lastProTelemetrySampledAt_ = data.telemetrySampledAt;
  for (const Contribution& contribution : data.contributions) {
    if (contribution.isMeasured == data.telemetrySampledAt.has_value())
      figures_.contributors.add(contribution);
  }
}

const PowerSessionSummary& RunningSummary::materialize(const PowerSession& session) {
  const Instant end = session.endedAt().value_or(lastSampleTimestamp_.value_or(session.startedAt()));
  figures_.update(summary_, elapsedSeconds(session.startedAt(), end));
  return summary_;
}

}  // namespace quellin
