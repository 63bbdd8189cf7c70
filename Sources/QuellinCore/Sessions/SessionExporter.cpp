#include "QuellinCore/Sessions/SessionExporter.h"

#include <cstddef>
#include <utility>

#include "QuellinCore/Sessions/PowerSessionCoders.h"

namespace quellin {
namespace {

// Enough for a sink to write to disk or network with little overhead.
constexpr std::size_t pieceSize = std::size_t{64} << 10U;

}  // namespace

SessionExporter::SessionExporter(TextSink sink) : sink_(std::move(sink)) { pending_.reserve(2 * pieceSize); }

template <class T>
std::expected<void, EncodingError> SessionExporter::writeLine(const T& record) {
  if (auto result = PowerSessionCoders::encoder.append(pending_, record); !result) return result;
  pending_.push_back('\n');
  if (pending_.size() >= pieceSize) finish();
  return {};
}

std::expected<void, EncodingError> SessionExporter::write(const PowerSessionExportEnvelope& envelope) {
  return writeLine(envelope);
}

std::expected<void, EncodingError> SessionExporter::write(const StoredSample& sample) {
  const SampleBlobs blobs = sample.blobs();
  auto snapshot = decoder_.decode<SystemPowerStateDTO>(blobs.snapshotData);
  if (!snapshot) return {};
  PowerSessionSampleDTO line{.id = sample.columns.id,
                             .timestamp = sample.columns.timestamp,
                             .elapsedSeconds = sample.columns.elapsedSeconds,
                             .snapshot = *std::move(snapshot),
                             .processActivities = {},
                             .proTelemetry = {}};
  if (blobs.processActivityData) {
    auto activities = decoder_.decode<std::vector<ProcessActivityDTO>>(*blobs.processActivityData);
    if (activities) line.processActivities = *std::move(activities);
  }
  if (blobs.proTelemetryData) {
    if (auto telemetry = decoder_.decode<ProTelemetrySnapshot>(*blobs.proTelemetryData)) {
      line.proTelemetry = *std::move(telemetry);
    }
  }
  return writeLine(PowerSessionSampleLine(std::move(line)));
}

void SessionExporter::finish() {
  if (!pending_.empty()) sink_(pending_);
  pending_.clear();
}

}  // namespace quellin
