#pragma once

#include <optional>
#include <span>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/ProcessActivityInfo.h"
#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Sessions/SessionFigures.h"
#include "QuellinCore/Sessions/StoredSample.h"

namespace quellin {

/// The summary of a session that is being recorded, kept up to date without reading the store again. It
/// differs from the stored one where the order of recording matters (a session lasts until the sample
/// recorded last) and in that pro telemetry stands in for the process activity of its sample. A plain value:
/// several threads may read one, as long as none changes it.
class RunningSummary {
 public:
  RunningSummary();

  /// Takes the next recorded sample.
  void ingest(const SystemPowerState& state, std::span<const ProcessActivityInfo> processActivities,
              const std::optional<ProTelemetrySnapshot>& proTelemetry);

  /// Takes the next sample of those already stored; they come by timestamp.
  void ingestStored(const StoredSample& sample, JSONDecoder& decoder);

  /// Brings the summary up to date, for a session with the start and end of `session`, and returns it.
  const PowerSessionSummary& materialize(const PowerSession& session);

  /// The summary as of the last `materialize`; empty before.
  [[nodiscard]] const PowerSessionSummary& summary() const { return summary_; }

  /// When the pro telemetry taken last was sampled.
  [[nodiscard]] const std::optional<Instant>& lastProTelemetrySampledAt() const {
    return lastProTelemetrySampledAt_;
  }

 private:
  void ingest(const PowerSamplePoint& point, const std::optional<std::int64_t>& batteryPercent,
              const SampleMaxima& maxima);

  SessionFigures figures_;
  std::optional<Instant> lastSampleTimestamp_;
  std::optional<Instant> lastProTelemetrySampledAt_;
  PowerSessionSummary summary_;
};

}  // namespace quellin
