#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"
#include "QuellinCore/Models/ProcessActivityInfo.h"

namespace quellin::testing_support {

/// A process with an impact score.
[[nodiscard]] inline ProcessActivityInfo activity(std::string name, double impactScore) {
  ProcessActivityInfo info;
  info.id = info.pid = 7;
  info.name = std::move(name);
  info.impactScore = impactScore;
  return info;
}

/// A row of pro telemetry.
[[nodiscard]] inline ProProcessEnergy energyRow(std::string name, std::optional<double> energyImpact,
                                                std::optional<double> cpuTimePercent = {},
                                                std::optional<double> wakeupsPerSecond = {}) {
  ProProcessEnergy row;
  row.pid = 3;
  row.name = std::move(name);
  row.energyImpact = energyImpact;
  row.cpuTimePercent = cpuTimePercent;
  row.wakeupsPerSecond = wakeupsPerSecond;
  return row;
}

/// Available pro telemetry of the moment `second` seconds after 1970.
[[nodiscard]] inline ProTelemetrySnapshot telemetry(double second, std::vector<ProProcessEnergy> rows) {
  ProTelemetrySnapshot snapshot;
  snapshot.isAvailable = true;
  snapshot.source = "powermetrics";
  snapshot.sampledAt = instantAt(second);
  snapshot.sampleIntervalMilliseconds = 1000;
  snapshot.processes = std::move(rows);
  return snapshot;
}

}  // namespace quellin::testing_support
