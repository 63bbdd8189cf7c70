#pragma once

#include <functional>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/TemperatureSensor.h"

namespace quellin {

/// What one run of the tool meets. The defaults are those of the running process.
struct HelperSurroundings {
  uid_t effectiveUserID = geteuid();
  gid_t effectiveGroupID = getegid();
  int standardOutput = STDOUT_FILENO;
  int standardError = STDERR_FILENO;
  /// Where the temperatures and the telemetry come from; each is called at most once, and only for its
  /// command.
  std::function<std::vector<TemperatureSensor>()> readTemperatures;
  std::function<ProTelemetrySnapshot()> sampleProTelemetry;

  /// This process with the machine's own readings.
  [[nodiscard]] static HelperSurroundings ofThisProcess();
};

}  // namespace quellin
