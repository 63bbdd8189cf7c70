#include "QuellinCore/Services/ProTelemetryService.h"

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "QuellinCore/Services/ProcessRunner.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

// The status carries -1 where the owner is not known.
constexpr std::int64_t unknownID = -1;

struct FileAttributes {
  std::optional<std::int64_t> ownerUserID;
  std::optional<std::int64_t> groupID;
  bool hasSetuidBit = false;
};

// The file's own attributes, not those of what a link points to: a link is never a properly installed tool.
FileAttributes attributesOf(const std::string& path) {
  struct stat status{};
  if (lstat(path.c_str(), &status) != 0) return {};
  return {.ownerUserID = status.st_uid,
          .groupID = status.st_gid,
          .hasSetuidBit = (status.st_mode & S_ISUID) != 0};
}

bool fileExists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

bool isExecutable(const std::string& path) { return access(path.c_str(), X_OK) == 0; }

std::string firstPresent(std::optional<std::string> first, std::optional<std::string> second,
                         std::string otherwise) {
  if (first) return *std::move(first);
  if (second) return *std::move(second);
  return otherwise;
}

}  // namespace

ProTelemetryService::ProTelemetryService(std::string helperPath, AdministratorPrompt prompt,
                                         MonotonicClock& clock, const WallClock& wallClock)
    : helperPath_(std::move(helperPath)),
      prompt_(std::move(prompt)),
      clock_(&clock),
      wallClock_(&wallClock) {}

HelperStatus ProTelemetryService::helperStatus() const {
  HelperStatus status;
  status.path = helperPath_;
  status.ownerUserID = unknownID;
  status.groupID = unknownID;
  if (!fileExists(helperPath_)) {
    status.error = "Helper is not installed";
    return status;
  }
  const FileAttributes attributes = attributesOf(helperPath_);
  status.isInstalled = true;
  status.isExecutable = isExecutable(helperPath_);
  status.isSetuidRoot = attributes.ownerUserID == 0 && attributes.hasSetuidBit;
  status.ownerUserID = attributes.ownerUserID.value_or(unknownID);
  status.groupID = attributes.groupID.value_or(unknownID);

  HelperProcessResult answer = invokeHelper({"status-json"}, statusTimeLimit);
  status.error = std::move(answer.error);
  if (!answer.data) return status;
  if (auto own = decodeJSON<HelperStatus>(*answer.data)) {
    status.installedVersion = std::move(own->installedVersion);
    status.supportsProTelemetry = own->supportsProTelemetry;
  }
  return status;
}

HelperInstallResult ProTelemetryService::installBundledHelper(const std::string& source) const {
  ProcessRunResult run = runProcess(
      prompt_.executable, prompt_.arguments(installCommand(source, helperPath_, prompt_.rootGroup())),
      installationTimeLimit, *clock_);
  if (run.terminationStatus != 0) {
    return {
        .succeeded = false,
        .message = firstPresent(std::move(run.error), std::move(run.output), "Helper installation failed")};
  }
  const HelperStatus status = helperStatus();
  if (status.isUsable()) return {.succeeded = true, .message = "Pro Telemetry helper installed"};
  return {.succeeded = false,
          .message = "Helper copied, but status check failed: " + status.error.value_or("unknown error")};
}

ProTelemetrySnapshot ProTelemetryService::readSnapshot() const {
  HelperProcessResult answer = invokeHelper({"read-pro-telemetry-json"}, telemetryTimeLimit);
  if (!answer.data) {
    return unavailableSnapshot(std::nullopt,
                               std::move(answer.error).value_or("Helper did not return telemetry"));
  }
  auto snapshot = decodeJSON<ProTelemetrySnapshot>(*answer.data);
  if (snapshot) return *std::move(snapshot);
  std::optional<std::string> text;
  if (isValidUTF8(*answer.data)) text = *std::move(answer.data);
  return unavailableSnapshot(std::move(text),
                             "Failed to decode helper telemetry: " + snapshot.error().debugDescription());
}

ProTelemetryService::HelperProcessResult ProTelemetryService::invokeHelper(
    const std::vector<std::string>& arguments, Seconds timeout) const {
  ProcessRunResult run = runProcess(helperPath_, arguments, timeout, *clock_);
  if (run.terminationStatus == 0 && run.outputData) return {.data = std::move(run.outputData), .error = {}};
  return {.data = {},
          .error = firstPresent(std::move(run.error), std::move(run.output),
                                "Helper exited with status " + std::to_string(run.terminationStatus))};
}

// The same shape as the tool's own failure, so that a reader need not care where it arose.
ProTelemetrySnapshot ProTelemetryService::unavailableSnapshot(std::optional<std::string> rawSampleSummary,
                                                              std::string error) const {
  ProTelemetrySnapshot snapshot;
  snapshot.isAvailable = false;
  snapshot.source = "powermetrics";
  snapshot.sampledAt = wallClock_->now();
  snapshot.sampleIntervalMilliseconds = 1000;
  snapshot.rawSampleSummary = std::move(rawSampleSummary);
  snapshot.error = std::move(error);
  return snapshot;
}

}  // namespace quellin
