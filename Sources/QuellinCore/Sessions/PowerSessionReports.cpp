// The operations of the store that look at a whole session.
#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/SessionExporter.h"
#include "QuellinCore/Sessions/SessionReport.h"
#include "QuellinCore/Sessions/Storage/ReadSnapshot.h"
#include "QuellinCore/Sessions/StoredSummary.h"

namespace quellin {

SessionReport PowerSessionStore::sumUp(const std::shared_ptr<PowerSession>& session,
                                       const SessionVisitor& visitor) {
  StoredSummary summary;
  CoverageBuilder coverage(session->startedAt(), session->sampleInterval());
  std::optional<Instant> lastTimestamp;
  JSONDecoder decoder;
  const auto show = [&](const std::optional<ReadingGap>& gap) {
    if (gap && visitor.gap) visitor.gap(*gap);
  };
  visitSamples(*this, session, [&](const StoredSample& sample) {
    const PowerSamplePoint point = summary.ingest(sample, decoder);
    if (visitor.sample) visitor.sample(sample, point);
    lastTimestamp = sample.columns.timestamp;
    if (sample.columns.totalWatts) show(coverage.ingestReading(*lastTimestamp));
  });
  SessionReport report{.session = PowerSessionMetadataDTO(*session),
                       .summary = summary.materialize(*session),
                       .coverage = {},
                       .recorderCost = cost(*session)};
  if (!lastTimestamp) return report;
  const Instant end = sessionEnd(*session, *lastTimestamp);
  report.coverage = coverage.materialize(end);
  show(coverage.lastGap(end));
  return report;
}

SessionReport PowerSessionStore::report(const std::shared_ptr<PowerSession>& session) {
  return report(session, {});
}

SessionReport PowerSessionStore::report(const std::shared_ptr<PowerSession>& session,
                                        const SessionVisitor& visitor) {
  requireCurrent(*surroundings_.executor);
  const ReadSnapshot oneMoment(container_->database());
  return sumUp(session, visitor);
}

PowerSessionSummary PowerSessionStore::summary(const std::shared_ptr<PowerSession>& session) {
  return report(session).summary;
}

SessionCoverage PowerSessionStore::coverage(const std::shared_ptr<PowerSession>& session) {
  return report(session).coverage;
}

void PowerSessionStore::exportJSONL(const std::shared_ptr<PowerSession>& session, Instant exportedAt,
                                    const TextSink& sink) {
  requireCurrent(*surroundings_.executor);
  const auto require = [&](const std::expected<void, EncodingError>& result) {
    if (!result)
      throw StoreError(StoreError::Kind::notEncodable, container_->path(), result.error().message());
  };
  const ReadSnapshot oneMoment(container_->database());  // summary and lines are of the same samples
  SessionExporter exporter(sink);
  const PowerSessionExportEnvelope envelope(PowerSessionExportFormat::schemaVersion, appVersion_, exportedAt,
                                            PowerSessionMetadataDTO(*session), sumUp(session, {}).summary);
  require(exporter.write(envelope));
  visitSamples(*this, session, [&](const StoredSample& sample) { require(exporter.write(sample)); });
  exporter.finish();
}

std::string PowerSessionStore::exportJSONL(const std::shared_ptr<PowerSession>& session, Instant exportedAt) {
  std::string document;
  exportJSONL(session, exportedAt, [&](std::string_view piece) { document.append(piece); });
  return document;
}

}  // namespace quellin
