#include "QuellinCore/Services/HelperAnswers.h"

#include <optional>
#include <utility>

#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

bool succeeded(const ProcessRunResult& run) { return run.terminationStatus == 0 && run.outputData; }

std::string errorOf(ProcessRunResult run) {
  std::string status = "Helper exited with status " + std::to_string(run.terminationStatus);
  return firstTextOf(std::move(run), std::move(status));
}

// The same shape as the tool's own failure, so that a reader need not care where it arose.
ProTelemetrySnapshot unavailableSnapshot(Instant now, std::optional<std::string> rawSampleSummary,
                                         std::string error) {
  ProTelemetrySnapshot snapshot;
  snapshot.isAvailable = false;
  snapshot.source = powermetricsSource;
  snapshot.sampledAt = now;
  snapshot.sampleIntervalMilliseconds = powermetricsIntervalMilliseconds;
  snapshot.rawSampleSummary = std::move(rawSampleSummary);
  snapshot.error = std::move(error);
  return snapshot;
}

}  // namespace

std::string firstTextOf(ProcessRunResult run, std::string otherwise) {
  if (run.error) return *std::move(run.error);
  if (run.output) return *std::move(run.output);
  return otherwise;
}

std::vector<TemperatureSensor> temperaturesOfHelper(std::int32_t terminationStatus,
                                                    const std::string& output) {
  if (terminationStatus != 0) return {};
  return decodeJSON<std::vector<TemperatureSensor>>(output).value_or(std::vector<TemperatureSensor>{});
}

HelperStatus withHelperAnswer(HelperStatus status, ProcessRunResult answer) {
  if (!succeeded(answer)) {
    status.error = errorOf(std::move(answer));
    return status;
  }
  if (auto own = decodeJSON<HelperStatus>(*answer.outputData)) {
    status.installedVersion = std::move(own->installedVersion);
    status.supportsProTelemetry = own->supportsProTelemetry;
  }
  return status;
}

ProTelemetrySnapshot snapshotOfHelper(ProcessRunResult answer, Instant now) {
  if (!succeeded(answer)) return unavailableSnapshot(now, std::nullopt, errorOf(std::move(answer)));
  auto snapshot = decodeJSON<ProTelemetrySnapshot>(*answer.outputData);
  if (snapshot) return *std::move(snapshot);
  std::optional<std::string> text;
  if (isValidUTF8(*answer.outputData)) text = *std::move(answer.outputData);
  return unavailableSnapshot(now, std::move(text),
                             "Failed to decode helper telemetry: " + snapshot.error().debugDescription());
}

}  // namespace quellin
