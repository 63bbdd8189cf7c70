#include "QuellinCore/Sessions/PowerSessionExport.h"

#include <utility>

#include "QuellinCore/Support/RawValue.h"

namespace quellin {

PowerSessionMetadataDTO::PowerSessionMetadataDTO(const PowerSession& session)
    : id(session.id()),
      title(session.title()),
      startedAt(session.startedAt()),
      endedAt(session.endedAt()),
      status(rawValue(session.status())),
      source(rawValue(session.source())),
      sampleInterval(session.sampleInterval()) {}

PowerSessionExportEnvelope::PowerSessionExportEnvelope(std::int64_t formatVersion,
                                                       std::string softwareVersion, Instant moment,
                                                       PowerSessionMetadataDTO metadata,
                                                       PowerSessionSummary sessionSummary)
    : schemaVersion(formatVersion),
      appVersion(std::move(softwareVersion)),
      exportedAt(moment),
      session(std::move(metadata)),
      summary(std::move(sessionSummary)) {}

PowerSessionSampleLine::PowerSessionSampleLine(PowerSessionSampleDTO line) : sample(std::move(line)) {}

}  // namespace quellin
