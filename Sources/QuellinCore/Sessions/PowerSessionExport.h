#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/PowerSessionDTOs.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/JSON/Record.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

/// The format of exported sessions, described in docs/formats.md.
namespace PowerSessionExportFormat {

/// The version that every envelope names.
inline constexpr std::int64_t schemaVersion = 2;

}  // namespace PowerSessionExportFormat

/// A session's own values as they are exported.
struct PowerSessionMetadataDTO {
  UUID id;                         ///< that of the stored session
  std::string title;               ///< as stored
  Instant startedAt;               ///< exported in whole seconds
  std::optional<Instant> endedAt;  ///< absent while the session is recorded
  std::string status;              ///< raw value of a `PowerSessionStatus`
  std::string source;              ///< raw value of a `PowerSessionSource`
  double sampleInterval = 0;       ///< seconds

  PowerSessionMetadataDTO() = default;
  explicit PowerSessionMetadataDTO(const PowerSession& session);  ///< status and source as raw values

  static constexpr auto fields() {
    return std::tuple{Field{"id", &PowerSessionMetadataDTO::id},
                      Field{"title", &PowerSessionMetadataDTO::title},
                      Field{"startedAt", &PowerSessionMetadataDTO::startedAt},
                      Field{"endedAt", &PowerSessionMetadataDTO::endedAt},
                      Field{"status", &PowerSessionMetadataDTO::status},
                      Field{"source", &PowerSessionMetadataDTO::source},
                      Field{"sampleInterval", &PowerSessionMetadataDTO::sampleInterval}};
  }

  bool operator==(const PowerSessionMetadataDTO&) const = default;
};

/// A stored sample as it is exported.
struct PowerSessionSampleDTO {
  UUID id;                                            ///< that of the stored sample
  Instant timestamp;                                  ///< exported in whole seconds
  double elapsedSeconds = 0;                          ///< since the session started, as stored
  SystemPowerStateDTO snapshot;                       ///< as decoded from the stored blob
  std::vector<ProcessActivityDTO> processActivities;  ///< empty when none was taken with this sample
  std::optional<ProTelemetrySnapshot> proTelemetry;   ///< present once for each measurement

  static constexpr auto fields() {
    return std::tuple{Field{"id", &PowerSessionSampleDTO::id},
                      Field{"timestamp", &PowerSessionSampleDTO::timestamp},
                      Field{"elapsedSeconds", &PowerSessionSampleDTO::elapsedSeconds},
                      Field{"snapshot", &PowerSessionSampleDTO::snapshot},
                      Field{"processActivities", &PowerSessionSampleDTO::processActivities},
                      Field{"proTelemetry", &PowerSessionSampleDTO::proTelemetry}};
  }

  bool operator==(const PowerSessionSampleDTO&) const = default;
};

/// The first line of an exported session.
struct PowerSessionExportEnvelope {
  std::string recordType = "session";  ///< tells the kinds of lines apart
  std::int64_t schemaVersion = 0;      ///< see `PowerSessionExportFormat`
  std::string appVersion;              ///< version of the software that exported it
  Instant exportedAt;                  ///< exported in whole seconds
  PowerSessionMetadataDTO session;     ///< its own values
  PowerSessionSummary summary;         ///< worked out at the export

  PowerSessionExportEnvelope() = default;
  PowerSessionExportEnvelope(std::int64_t schemaVersion, std::string appVersion, Instant exportedAt,
                             PowerSessionMetadataDTO session, PowerSessionSummary summary);  ///< all fields

  static constexpr auto fields() {
    return std::tuple{Field{"recordType", &PowerSessionExportEnvelope::recordType},
                      Field{"schemaVersion", &PowerSessionExportEnvelope::schemaVersion},
                      Field{"appVersion", &PowerSessionExportEnvelope::appVersion},
                      Field{"exportedAt", &PowerSessionExportEnvelope::exportedAt},
                      Field{"session", &PowerSessionExportEnvelope::session},
                      Field{"summary", &PowerSessionExportEnvelope::summary}};
  }

  bool operator==(const PowerSessionExportEnvelope&) const = default;
};

/// Every other line of an exported session.
struct PowerSessionSampleLine {
  std::string recordType = "sample";  ///< tells the kinds of lines apart
  PowerSessionSampleDTO sample;       ///< one moment of the session

  PowerSessionSampleLine() = default;
  explicit PowerSessionSampleLine(PowerSessionSampleDTO sample);  ///< takes it as it is

  static constexpr auto fields() {
    return std::tuple{Field{"recordType", &PowerSessionSampleLine::recordType},
                      Field{"sample", &PowerSessionSampleLine::sample}};
  }

  bool operator==(const PowerSessionSampleLine&) const = default;
};

}  // namespace quellin
