#include "QuellinCore/Models/ProTelemetrySnapshot.h"

namespace quellin {

std::optional<double> ProTelemetrySnapshot::freshPowerTotal(Instant now, Seconds maxAge) const {
  if (!isAvailable || now - sampledAt > maxAge) return std::nullopt;
  std::optional<double> total;
  for (const std::optional<double>& watts : {cpuPowerWatts, gpuPowerWatts, anePowerWatts}) {
    if (watts) total = total.value_or(0) + *watts;
  }
  return total;
}

}  // namespace quellin
