// The operations of the store that look at a whole session.
#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/SessionExporter.h"
#include "QuellinCore/Sessions/Storage/ReadSnapshot.h"
#include "QuellinCore/Sessions/StoredSummary.h"

namespace quellin {

PowerSessionSummary PowerSessionStore::summary(const std::shared_ptr<PowerSession>& session) {
  StoredSummary result;
  JSONDecoder decoder;
  visitSamples(*this, session, [&](const StoredSample& sample) { result.ingest(sample, decoder); });
  return result.materialize(*session);
}

SessionCoverage PowerSessionStore::coverage(const std::shared_ptr<PowerSession>& session) {
  CoverageBuilder result(session->startedAt(), session->sampleInterval());
  std::optional<Instant> lastTimestamp;
  visitSamples(*this, session, [&](const StoredSample& sample) {
    if (sample.columns.totalWatts) result.ingestReading(sample.columns.timestamp);
    lastTimestamp = sample.columns.timestamp;
  });
  return lastTimestamp ? result.materialize(sessionEnd(*session, *lastTimestamp)) : SessionCoverage();
}

void PowerSessionStore::exportJSONL(const std::shared_ptr<PowerSession>& session, Instant exportedAt,
                                    const TextSink& sink) {
  requireCurrent(*surroundings_.executor);
  const auto require = [&](const std::expected<void, EncodingError>& result) {
    if (result) return;
    throw StoreError(StoreError::Kind::notEncodable, container_->path(),
                     result.error().path + ": " + result.error().reason);
  };
  const ReadSnapshot oneMoment(container_->database());  // summary and lines are of the same samples
  SessionExporter exporter(sink);
  const PowerSessionExportEnvelope envelope(PowerSessionExportFormat::schemaVersion, appVersion_, exportedAt,
                                            PowerSessionMetadataDTO(*session), summary(session));
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
