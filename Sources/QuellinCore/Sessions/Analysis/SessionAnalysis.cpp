#include "QuellinCore/Sessions/Analysis/SessionAnalysis.h"

#include <cmath>

#include "QuellinCore/Sessions/StoredSample.h"
#include "QuellinCore/Sessions/StoredSummary.h"

namespace quellin {
namespace {

// No value for a session in which no time between two readings is too long.
std::optional<double> finiteLimit(double sampleInterval) {
  const double seconds = longestCoveredSeconds(sampleInterval);
  return std::isfinite(seconds) ? std::optional(seconds) : std::nullopt;
}

}  // namespace

SessionAnalysis analyseSession(PowerSessionStore& store, const std::shared_ptr<PowerSession>& session) {
  SessionAnalysis result;
  result.session = PowerSessionMetadataDTO(*session);
  StoredSummary summary;
  CoverageBuilder coverage(session->startedAt(), session->sampleInterval());
  SeriesBuilder series(session->startedAt());
  std::optional<Instant> lastTimestamp;
  JSONDecoder decoder;
  visitSamples(store, session, [&](const StoredSample& sample) {
    summary.ingest(sample, decoder);
    series.ingest(powerPoint(sample, decoder), sample.columns);
    lastTimestamp = sample.columns.timestamp;
    if (!sample.columns.totalWatts) return;
    if (const auto gap = coverage.ingestReading(*lastTimestamp)) result.gaps.push_back(*gap);
  });
  result.summary = summary.materialize(*session);
  if (lastTimestamp) {
    const Instant end = sessionEnd(*session, *lastTimestamp);
    result.coverage = coverage.materialize(end);
    if (const auto gap = coverage.lastGap(end)) result.gaps.push_back(*gap);
  }
  result.longestCoveredSeconds = finiteLimit(session->sampleInterval());
  result.recorderCost = store.cost(*session);
  result.sourceTotals = totalsBySource(result.summary.powerSegments);
  result.series = series.series();
  return result;
}

}  // namespace quellin
