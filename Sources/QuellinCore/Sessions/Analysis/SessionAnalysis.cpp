#include "QuellinCore/Sessions/Analysis/SessionAnalysis.h"

#include <cmath>

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
  SeriesBuilder series(session->startedAt());
  const SessionVisitor visitor{
      .sample = [&](const StoredSample& sample,
                    const PowerSamplePoint& point) { series.ingest(point, sample.columns); },
      .gap = [&](const ReadingGap& gap) { result.gaps.push_back(gap); }};
  static_cast<SessionReport&>(result) = store.report(session, visitor);
  result.longestCoveredSeconds = finiteLimit(session->sampleInterval());
  result.sourceTotals = totalsBySource(result.summary.powerSegments);
  result.series = series.series();
  return result;
}

}  // namespace quellin
