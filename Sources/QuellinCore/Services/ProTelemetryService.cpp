#include "QuellinCore/Services/ProTelemetryService.h"

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "QuellinCore/Services/HelperAnswers.h"
#include "QuellinCore/Services/ProcessRunner.h"

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

  return withHelperAnswer(std::move(status),
                          runProcess(helperPath_, {"status-json"}, statusTimeLimit, *clock_));
}

HelperInstallResult ProTelemetryService::installBundledHelper(const std::string& source) const {
  ProcessRunResult run = runProcess(
      prompt_.executable, prompt_.arguments(installCommand(source, helperPath_, prompt_.rootGroup())),
      installationTimeLimit, *clock_);
  if (run.terminationStatus != 0) {
    return {.succeeded = false, .message = firstTextOf(std::move(run), "Helper installation failed")};
  }
  const HelperStatus status = helperStatus();
  if (status.isUsable()) return {.succeeded = true, .message = "Pro Telemetry helper installed"};
  return {.succeeded = false,
          .message = "Helper copied, but status check failed: " + status.error.value_or("unknown error")};
}

ProTelemetrySnapshot ProTelemetryService::readSnapshot() const {
  ProcessRunResult answer = runProcess(helperPath_, {"read-pro-telemetry-json"}, telemetryTimeLimit, *clock_);
  return snapshotOfHelper(std::move(answer), wallClock_->now());
}

}  // namespace quellin
